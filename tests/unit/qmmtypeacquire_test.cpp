#include "xmodule/agentless/esxinodenumacquire.h"
#include "xmodule/agentless/qmmtypeacquire.h"

#include "support/minimalbmc.h"

#include <gtest/gtest.h>

using XModule::Agentless::ESXINodeNumAcquire;
using XModule::Agentless::QMMTypeAcquire;
using XModule::Agentless::QMMTypeValue;

TEST(QMMTypeAcquireTest, FamilyComesFromTheManagerModelAndOnlyABmcIsAsked)
{
    const struct {
        const char* model;
        QMMTypeValue family;
    } models[] = {
        {"QCC-2", XModule::Agentless::QMM_TYPE_QCC},  {"qcc", XModule::Agentless::QMM_TYPE_QCC},
        {"QMM2 rev B", XModule::Agentless::QMM_TYPE_QMM2}, {"QMM", XModule::Agentless::QMM_TYPE_QMM},
        {"OBMC-2", XModule::Agentless::QMM_TYPE_UNKNOWN}, {"", XModule::Agentless::QMM_TYPE_UNKNOWN},
    };
    for (const auto& m : models) EXPECT_EQ(m.family, QMMTypeAcquire::FamilyOfModel(m.model)) << m.model;

    LoopbackBmc bmc(StandardBmcOptions("pw"));
    bmc.Start();
    QMMTypeValue family = XModule::Agentless::QMM_TYPE_UNKNOWN;
    EXPECT_EQ(QMMTypeAcquire::QMM_TYPE_OK, QMMTypeAcquire(StandardBmcConnection(bmc, "pw")).GetQMMType(family));
    EXPECT_EQ(XModule::Agentless::QMM_TYPE_QCC, family);
    int nodes = 0;
    EXPECT_EQ(ESXINodeNumAcquire::NODE_NUMBER_OK, ESXINodeNumAcquire(StandardBmcConnection(bmc, "pw")).GetNodeNumber(nodes));
    EXPECT_EQ(1, nodes);

    // A wrong password reads nothing, and the host itself is no BMC even on the loopback address.
    QMMTypeValue untouched = XModule::Agentless::QMM_TYPE_QMM;
    EXPECT_EQ(QMMTypeAcquire::QMM_TYPE_UNREADABLE, QMMTypeAcquire(StandardBmcConnection(bmc, "wrong")).GetQMMType(untouched));
    XModule::ConnectionInfo host = StandardBmcConnection(bmc, "pw");
    host.isBmc = false;
    EXPECT_EQ(QMMTypeAcquire::QMM_TYPE_NO_BMC, QMMTypeAcquire(host).GetQMMType(untouched));
    EXPECT_EQ(ESXINodeNumAcquire::NODE_NUMBER_NO_BMC, ESXINodeNumAcquire(host).GetNodeNumber(nodes));
    EXPECT_EQ(XModule::Agentless::QMM_TYPE_QMM, untouched);
}
