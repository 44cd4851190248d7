#include "repository/modules/rlegacymodule.h"

#include "kestro/repository/rinstance.h"
#include "kestro/repository/rinstanceshtmlwriter.h"
#include "kestro/repository/rinstanceswrapper.h"
#include "kestro/repository/rrepository.h"
#include "support/tempdir.h"

#include <gtest/gtest.h>

#include <memory>

using namespace kestro::repository;

namespace {

const char* const kEventKeys[] = {"T", "Type", "MessageTimestamp", "Source", "Category",
                                  "Message", "EventID", "User", "Computer"};

// An event whose fields hold their key and "1"; security events have no icon column.
std::unique_ptr<RInstance> Event(const std::string& type, const std::string& severity, bool security)
{
    std::unique_ptr<RInstance> event(new RInstance(type, "Application Event", -1));
    for (const std::string key : kEventKeys) {
        std::string value = key + "1";
        if (key == "T") {
            if (security) continue;
            value.clear();
        }
        if (key == "Type") value = severity;
        event->AddProperty(key, key == "EventID" ? "Event ID" : key, value, false);
    }
    return event;
}

// The tables a wrapper of `type` writes through the legacy module's form, between page title and bottom.
std::string Tables(RModule& module, const std::string& type, const std::vector<RInstance*>& records)
{
    TempDir dir;
    {
        RInstancesHTMLWriter writer(dir.Path(), "page", "Page");
        RInstancesWrapper(type, records, module.FindWrapCallback(type)).WriteReport(writer);
    }
    const std::string page = dir.Read("page.html");
    const std::string title = "<div class=\"pagetitle\">Page</div>\n";
    const std::string::size_type begin = page.find(title) + title.size();
    return page.substr(begin, page.rfind("<br/><br/>\n") - begin);
}

}  // namespace

TEST(RLegacyModuleTest, OldEventTypesGetSortableTablesWithSeverityIcons)
{
    RLegacyModule legacy;
    EXPECT_EQ("LegacyModule", legacy.GetName());
    EXPECT_EQ("Legacy Module", legacy.GetDisplay());
    const std::unique_ptr<RInstance> warning = Event("SystemEvent", "Warning", false);
    const std::unique_ptr<RInstance> error = Event("SystemEvent", "Error", false);
    EXPECT_EQ(
        "<div class=\"tabletitle\">Application Event</div>\n"
        "<table width=\"100%\" class=\"rowtable sortable\">\n<tr>\n"
        "<th width=\"2%\">T</th>\n<th width=\"8%\">Type</th>\n<th width=\"12%\">MessageTimestamp</th>\n"
        "<th width=\"13%\">Source</th>\n<th width=\"7%\">Category</th>\n<th width=\"34%\">Message</th>\n"
        "<th width=\"5%\">Event ID</th>\n<th width=\"9%\">User</th>\n<th width=\"10%\">Computer</th>\n</tr>\n"
        "<tr class=\"bg0\">\n<td><img src=\"data/w.gif\"></td>\n<td>Warning</td>\n<td>MessageTimestamp1</td>\n"
        "<td>Source1</td>\n<td>Category1</td>\n<td>Message1</td>\n<td>EventID1</td>\n<td>User1</td>\n"
        "<td>Computer1</td>\n</tr>\n"
        "<tr class=\"bg1\">\n<td><img src=\"data/e.gif\"></td>\n<td>Error</td>\n<td>MessageTimestamp1</td>\n"
        "<td>Source1</td>\n<td>Category1</td>\n<td>Message1</td>\n<td>EventID1</td>\n<td>User1</td>\n"
        "<td>Computer1</td>\n</tr>\n"
        "</table>\n",
        Tables(legacy, "SystemEvent", {warning.get(), error.get()}));

    const std::unique_ptr<RInstance> security = Event("SecurityEvent", "Audit Success", true);
    EXPECT_EQ(
        "<div class=\"tabletitle\">Application Event</div>\n"
        "<table width=\"100%\" class=\"rowtable sortable\">\n<tr>\n"
        "<th width=\"10%\">Type</th>\n<th width=\"12%\">MessageTimestamp</th>\n"
        "<th width=\"13%\">Source</th>\n<th width=\"7%\">Category</th>\n<th width=\"34%\">Message</th>\n"
        "<th width=\"5%\">Event ID</th>\n<th width=\"9%\">User</th>\n<th width=\"10%\">Computer</th>\n</tr>\n"
        "<tr class=\"bg0\">\n<td>Audit Success</td>\n<td>MessageTimestamp1</td>\n"
        "<td>Source1</td>\n<td>Category1</td>\n<td>Message1</td>\n<td>EventID1</td>\n<td>User1</td>\n"
        "<td>Computer1</td>\n</tr>\n"
        "</table>\n",
        Tables(legacy, "SecurityEvent", {security.get()}));
}

TEST(RLegacyModuleTest, MessageLogsHaveTheirWidthsAndNoTypeCanBeCollected)
{
    RLegacyModule legacy;
    RInstance message("QMMMessageLogData", "Messages", -1);
    for (int i = 0; i < 9; ++i) message.AddProperty("K" + std::to_string(i), "H" + std::to_string(i), i, false);
    const std::string tables = Tables(legacy, "QMMMessageLogData", {&message});
    EXPECT_NE(std::string::npos,
              tables.find("<table width=\"100%\" class=\"rowtable sortable\">\n<tr>\n"
                          "<th width=\"5%\">H0</th>\n<th width=\"5%\">H1</th>\n<th width=\"20%\">H2</th>\n"
                          "<th width=\"10%\">H3</th>\n<th width=\"10%\">H4</th>\n<th width=\"20%\">H5</th>\n"
                          "<th width=\"10%\">H6</th>\n<th width=\"10%\">H7</th>\n<th width=\"10%\">H8</th>\n</tr>\n"))
        << tables;
    RRepository repo(ConnectNone);
    for (const char* type : {"QMMMessageLogData", "ApplicationEvent", "SystemEvent", "SecurityEvent"})
        EXPECT_THROW(legacy.EnumInstances(type, repo), boost::bad_function_call) << type;
}
