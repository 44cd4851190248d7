#include "fakebmc/mockuptree.h"

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
