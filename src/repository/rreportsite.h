#ifndef KESTRO_REPOSITORY_RREPORTSITE_H
#define KESTRO_REPOSITORY_RREPORTSITE_H

#include "kestro/repository/rinstanceswrapper.h"
#include "rreportcategory.h"

#include <string>
#include <vector>

namespace kestro {
namespace repository {

class RRepositoryPrivate;
class RInstancesWriter;

// Writes the report site of a repository into an existing folder: frames, banner, navigator,
// one page per group and the data folder. Every file replaces the old one only when whole. The
// caller holds the store lock.
class RReportSite {
public:
    RReportSite(RRepositoryPrivate& repository, const std::string& directory);
    ~RReportSite();

    bool Write();

private:
    void CopyData();
    bool WriteIndex();
    bool WriteHeader();
    bool WriteNavigator();
    bool WriteGroupPage(const ReportGroup& group);
    bool WriteType(const ReportType& type, RInstancesWriter& writer);
    bool WriteWrapper(const ReportType& type, const RInstancesWrapper::WrapCallback& callback,
                      RInstancesWriter& writer);
    void FreeInstances();
    RInstancesWrapper::WrapCallback FindWrapCallback(const std::string& type);
    void AttachReferenceData(RInstancesWrapper& wrapper);
    std::string ContentPage();
    std::string PagePath(const std::string& file) const;

    RRepositoryPrivate& repository;
    std::string directory;
    std::vector<RInstance*> toFree;
    // False once a group page or one of its raw-data files could not be stored.
    bool groupPagesStored;
};

}  // namespace repository
}  // namespace kestro

#endif
