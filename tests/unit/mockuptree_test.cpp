#include "fakebmc/mockuptree.h"

#include <boost/json/parse.hpp>
#include <gtest/gtest.h>

#include "support/tempdir.h"

TEST(MockupTreeTest, ServesFilesAndDocumentsButNothingOutsideTheTree)
{
    TempDir dir;
    dir.Write("tree/redfish/v1/index.json", "{\"Id\":\"root\"}");
    dir.Write("secret/index.json", "{\"Id\":\"secret\"}");
    MockupTree tree(dir.Path() + "/tree");
    std::string body;
    EXPECT_TRUE(tree.Load("/redfish/v1/", body));
    EXPECT_EQ("{\"Id\":\"root\"}", body);
    EXPECT_FALSE(tree.Load("/redfish/v1/../../secret", body));
    EXPECT_FALSE(tree.Load("redfish/v1", body));
    EXPECT_FALSE(tree.Load("/redfish/v2", body));

    tree.SetDocument("/redfish/v1/", "{\"Id\":\"memory\"}");
    EXPECT_TRUE(tree.Load("/redfish/v1", body));
    EXPECT_EQ("{\"Id\":\"memory\"}", body);
}

TEST(MockupTreeTest, ExpandsAndPagesMembers)
{
    MockupTree tree;
    tree.SetDocument("/c", R"({"Members":[{"@odata.id":"/c/1"},{"@odata.id":"/c/2"},{"@odata.id":"/c/3"}]})");
    tree.SetDocument("/c/1", R"({"Id":"1"})");
    tree.SetDocument("/c/2", "not json");
    std::string body;
    MockupTree::Query query;
    query["$expand"] = ".($levels=1)";
    ASSERT_TRUE(tree.Render("/c", query, 0, body));
    EXPECT_EQ(boost::json::parse(R"({"Members":[{"Id":"1"},{"@odata.id":"/c/2"},{"@odata.id":"/c/3"}]})"),
              boost::json::parse(body));

    query.clear();
    query["$skip"] = "2";
    ASSERT_TRUE(tree.Render("/c", query, 2, body));
    EXPECT_EQ(boost::json::parse(R"({"Members":[{"@odata.id":"/c/3"}]})"), boost::json::parse(body));
    query["$skip"] = "0";
    ASSERT_TRUE(tree.Render("/c/", query, 2, body));
    EXPECT_EQ("/c?$skip=2", boost::json::parse(body).at("Members@odata.nextLink").as_string());

    ASSERT_TRUE(tree.Render("/c/2", query, 2, body));
    EXPECT_EQ("not json", body);
    EXPECT_FALSE(tree.Render("/c/4", query, 2, body));
}
