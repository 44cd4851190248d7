#ifndef KESTRO_REPOSITORY_MODULES_REXECUTIONLOGMODULE_H
#define KESTRO_REPOSITORY_MODULES_REXECUTIONLOGMODULE_H

#include "kestro/repository/rmodule.h"

#include <istream>
#include <string>
#include <vector>

namespace kestro {
namespace repository {

// Puts the run's own error lines into the report, from the tool's log file.
class RExecutionLogModule : public RModule {
public:
    std::string GetName() override;
    std::string GetDisplay() override;

    // The lines of a log that hold "[ERROR]" or "[FATAL]", whole, in order.
    static std::vector<std::string> ErrorLines(std::istream& log);

protected:
    void InitCallbacks() override;

private:
    void EnumExecutionErrorLogInstances(RRepository& repo);
};

}  // namespace repository
}  // namespace kestro

#endif
