// The computer system as zebcim serves it.
#include <algorithm>

#include "RealCommand.h"
#include "support/TestFolder.h"

namespace ZebManager {
namespace {

using OwnSystem = RealCommand;

TEST_F(OwnSystem, HasThePortsWhateverOtherObjectManagersAreConfiguredTo) {
  const ZEB::test::TestFolder site;
  site.write("zeb.toml", "computer-system-path = 'root/cimv2:Site_System.Name=\"server\"'\n");
  const std::string path =
      R"(ZEB_ComputerSystem.CreationClassName="ZEB_ComputerSystem",Name=")" + hostName() + "\"";
  const Outcome outcome = zebcim({"associators", path, "--assoc-class", "ZEB_EthernetDevice", "--names",
                                  "--source", snapshotFile("two_cards")},
                                 {"ZEB_CONFIG=" + site.file("zeb.toml")});
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(std::ranges::count(outcome.out, '\n'), 6) << outcome.out;
}

}  // namespace
}  // namespace ZebManager
