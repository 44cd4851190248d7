#ifndef KESTRO_REPOSITORY_MODULES_RREPORTHIGHLIGHTSMODULE_H
#define KESTRO_REPOSITORY_MODULES_RREPORTHIGHLIGHTSMODULE_H

#include "kestro/repository/rmodule.h"

namespace kestro {
namespace repository {

// Gives ReportHighlights its table; the log modules add the records themselves.
class RReportHighlightsModule : public RModule {
public:
    std::string GetName() override;
    std::string GetDisplay() override;

protected:
    void InitCallbacks() override;

private:
    void EnumNothing(RRepository& repo);
};

}  // namespace repository
}  // namespace kestro

#endif
