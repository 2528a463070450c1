// The hunt on a kernel with bonds and VLANs, in a namespace that it makes there for itself.
#include "GuestFixture.h"

namespace ZEB::guest {
namespace {

using HuntTest = GuestFixture;

TEST_F(HuntTest, ThroughRandomHistoriesOfBondsAndVlans) {
  guest().must("ip link add probed type bond && ip link del probed");
  const Result hunt = guest().run(ZEB_LIVE_HUNT " --gtest_brief=1", std::chrono::minutes(10));
  EXPECT_EQ(hunt.status, 0) << hunt.output << hunt.errors;
  EXPECT_EQ(hunt.output.find("SKIPPED"), std::string::npos) << hunt.output;
}

}  // namespace
}  // namespace ZEB::guest
