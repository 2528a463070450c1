#include "WorkerFixture.h"

// What no store keeps is kept over a rebuild all the same.

namespace ZEB::test {
namespace {

using CmpiCpp::CmpiData;
using CmpiCpp::CmpiInstance;

class RebuildTest : public WorkerTest {
 protected:
  CmpiInstance membership(const std::string& memberClass) {
    for (const auto& found : enumerate("ZEB_EthernetMemberOfCollection")) {
      if (found.getProperty("Member").asReference().className().view() == memberClass) return found;
    }
    throw std::out_of_range(memberClass);
  }
  void rebuild() {
    host.addPort(6, "eth4");
    host.play();
    EXPECT_TRUE(succeeded(pollingPass()));
    EXPECT_EQ(enumerate("ZEB_EthernetPort").size(), 5U);
  }
};

TEST_F(RebuildTest, KeepsTheFilterOfATeam) {
  change(membership("ZEB_EthernetTeam"), "Included", false);
  rebuild();
  EXPECT_EQ(membership("ZEB_EthernetTeam").getProperty("Included"), CmpiData(false));
}

TEST_F(RebuildTest, KeepsTheFilterOfAPortWithoutAStore) {
  stop();
  configure("ZEB_STORE_DIR", "/dev/null/store");
  start();
  change(membership("ZEB_EthernetPort"), "Included", false);
  rebuild();
  EXPECT_EQ(membership("ZEB_EthernetPort").getProperty("Included"), CmpiData(false));
}

}  // namespace
}  // namespace ZEB::test
