#include "repository/modules/rreporthighlightsmodule.h"

#include "repository/modules/rtableforms.h"

#include <boost/bind/bind.hpp>

namespace kestro {
namespace repository {

std::string RReportHighlightsModule::GetName() { return "ReportHighlights Module"; }

std::string RReportHighlightsModule::GetDisplay() { return "Report Highlights Module"; }

void RReportHighlightsModule::InitCallbacks()
{
    using boost::placeholders::_1;
    TypeCallbacks& highlights = typeCallbacks["ReportHighlights"];
    highlights.enumCallback = boost::bind(&RReportHighlightsModule::EnumNothing, this, _1);
    highlights.wrapCallback = &RTableForms::WrapSingleColumn;
}

void RReportHighlightsModule::EnumNothing(RRepository&) {}

}  // namespace repository
}  // namespace kestro
