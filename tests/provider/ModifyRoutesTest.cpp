#include <gmock/gmock.h>

#include "cmpicpp/CmpiStatus.h"
#include "monitor/ZEB_EthernetCollection.h"
#include "monitor/ZEB_EthernetMemberOfCollection.h"
#include "provider/ModifyInstance.h"
#include "support/RecordingLogSink.h"
#include "unit/monitor/Members.h"

// Changes of a membership that no build makes so: one whose collection is not there, and one that is not
// shown.

namespace ZEB::test {
namespace {

using CmpiCpp::CmpiInstance;

class ModifyRoutesTest : public testing::Test {
 protected:
  ModifyRoutesTest() {
    instances.createInstance(membership);
    wanted.addProperty("Included", false);
  }

  CMPIrc modify() {
    try {
      modifyInstance({recorded.logger, instances, nullptr}, membership->makeObjectPath(), wanted, nullptr);
      return CMPI_RC_OK;
    } catch (const CmpiCpp::CmpiStatus& status) {
      return status.rc();
    }
  }

  RecordedLogger recorded;
  Member port{recorded.logger, CollectionMember::Kind::Port, "port", operationalStatus::OK};
  ZEB_EthernetCollection* collection = new ZEB_EthernetCollection(recorded.logger, "root/jxv");
  ZEB_EthernetMemberOfCollection* membership =
      new ZEB_EthernetMemberOfCollection(recorded.logger, "root/jxv", port, *collection);
  std::unique_ptr<ZEB_EthernetCollection> alone{collection};
  CmpiManagedInstanceCollection instances{recorded.logger};
  CmpiInstance wanted{CmpiCpp::CmpiObjectPath("root/jxv", "ZEB_EthernetMemberOfCollection")};
};

TEST_F(ModifyRoutesTest, aCollectionThatIsNotThereIsNotFound) {
  EXPECT_EQ(modify(), CMPI_RC_ERR_NOT_FOUND);
}

TEST_F(ModifyRoutesTest, aCollectionThatIsThereIsUpdated) {
  instances.createInstance(alone.release());
  EXPECT_EQ(modify(), CMPI_RC_OK);
  EXPECT_FALSE(port.included());
  EXPECT_TRUE(collection->testAndClearStateChanged());
}

TEST_F(ModifyRoutesTest, anInvisibleInstanceIsNotChanged) {
  instances.createInstance(alone.release());
  membership->setVisible(false);
  EXPECT_EQ(modify(), CMPI_RC_OK);
  EXPECT_TRUE(port.included());
  EXPECT_TRUE(recorded.sink->has(LogLevel::Warn, "instance not found"));
}

TEST_F(ModifyRoutesTest, anInvisibleCollectionIsNotFound) {
  collection->setVisible(false);
  instances.createInstance(alone.release());
  EXPECT_EQ(modify(), CMPI_RC_ERR_NOT_FOUND);
}

}  // namespace
}  // namespace ZEB::test
