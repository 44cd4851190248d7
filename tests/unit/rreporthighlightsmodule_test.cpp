#include "repository/modules/rreporthighlightsmodule.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rinstanceshtmlwriter.h"
#include "kestro/repository/rinstanceswrapper.h"
#include "kestro/repository/rrepository.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

using namespace kestro::repository;

TEST(RReportHighlightsModuleTest, OneWideColumnAndNothingCollected)
{
    RReportHighlightsModule highlights;
    EXPECT_EQ("ReportHighlights Module", highlights.GetName());
    EXPECT_EQ("Report Highlights Module", highlights.GetDisplay());
    RRepository repo(ConnectNone);
    highlights.EnumInstances("ReportHighlights", repo);
    EXPECT_TRUE(repo.GetCollectedInstanceTypes().empty());

    RInstance note("ReportHighlights", "Report Highlights", -1);
    note.AddProperty("Message", "Message", std::string("Fan 2 failed"), false);
    TempDir dir;
    {
        RInstancesHTMLWriter writer(dir.Path(), "page", "Page");
        const std::vector<RInstance*> records(1, &note);
        EXPECT_TRUE(RInstancesWrapper("ReportHighlights", records, highlights.FindWrapCallback("ReportHighlights"))
                        .WriteReport(writer));
    }
    EXPECT_NE(std::string::npos,
              dir.Read("page.html").find("<div class=\"pagetitle\">Page</div>\n"
                                         "<div class=\"tabletitle\">Report Highlights</div>\n"
                                         "<table width=\"100%\" class=\"rowtable\">\n<tr>\n"
                                         "<th width=\"100%\">Message</th>\n</tr>\n"
                                         "<tr class=\"bg0\">\n<td>Fan 2 failed</td>\n</tr>\n</table>\n<br/><br/>\n"));
}
