// zeb-register with OpenPegasus: what it does to it when it takes what it is given.
#include <gmock/gmock.h>

#include "packaging/StandIns.h"

namespace ZebManager {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using testing::StartsWith;

const std::string kPegasusDone = "zeb-register: OpenPegasus: registered\n";
const std::string kAskFolder = "cimconfig -g providerDir -c";

std::string has(const std::string& interop) {
  return "cimcli gc PG_ProviderModule -n " + interop;
}
std::string cimmof(const std::string& options, const std::string& file) {
  return "cimmof " + options + " ROOT" DATA_FOLDER "/registration/" + file;
}

TEST(RegisterPegasus, LoadsSchemaThenRegistration) {
  const FakeRoot root;
  addPegasus(root);
  const Outcome outcome = root.doRegister();
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.out, StartsWith(kPegasusDone));
  // A call a file: the compiler's status is that of the last.
  EXPECT_THAT(root.calls(),
              ElementsAre(kPegasusAsk, kAskFolder, has("root/PG_InterOp"), "cimcli nc -di -n root/jxv",
                          "cimcli ns", cimmof("-n root/jxv", "qualifiers.mof"),
                          "cimmof -n root/jxv ROOT" DATA_FOLDER "/schema/cim.mof",
                          cimmof("-uc -n root/jxv", "ZEBEthernet.mof"),
                          "cimmof -n root/PG_InterOp WORK/ZEBEthernetProvider.mof"));
  EXPECT_EQ(root.linkAt(kPegasusProviders + kLibrary), PROVIDER_FOLDER + kLibrary);
}

TEST(RegisterPegasus, GoesWithoutUserContextWhereThatIsRefused) {
  const FakeRoot root;
  addPegasus(root);
  root.setHabits("no-user-context");
  const Outcome outcome = root.doRegister();
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.out, StartsWith(kPegasusDone));
  const std::string instance = root.read(pegasusModule("root#PG_InterOp"));
  EXPECT_THAT(instance, HasSubstr("Location = \"ZEBEthernetPortProvider\";"));
  EXPECT_THAT(instance, Not(HasSubstr("UserContext")));
  EXPECT_EQ(root.doRegister().out, "zeb-register: OpenPegasus: registered already\n");
}

TEST(RegisterPegasus, DoesNothingWhenNothingChanged) {
  const FakeRoot root;
  addPegasus(root);
  ASSERT_EQ(root.doRegister().status, 0);
  root.calls();
  const Tree before = root.tree();
  const Outcome second = root.doRegister();
  EXPECT_EQ(second.status, 0) << second.err;
  EXPECT_EQ(second.out, "zeb-register: OpenPegasus: registered already\n");
  EXPECT_THAT(root.calls(), ElementsAre(kPegasusAsk, kAskFolder));
  EXPECT_THAT(changes(before, root.tree()), IsEmpty());
}

TEST(RegisterPegasus, MakesTheServerTakeANewPlugIn) {
  const FakeRoot root;
  addPegasus(root);
  ASSERT_EQ(root.doRegister().status, 0);
  root.append(PROVIDER_FOLDER + kLibrary, ", improved");
  root.calls();
  EXPECT_EQ(root.doRegister().out, "zeb-register: OpenPegasus: registered already; takes the new plug-in\n");
  EXPECT_THAT(root.calls(), ElementsAre(kPegasusAsk, kAskFolder, "cimprovider -d -m ZEBEthernetPortProvider",
                                        "cimprovider -e -m ZEBEthernetPortProvider"));
  EXPECT_EQ(root.doRegister().out, "zeb-register: OpenPegasus: registered already\n");
}

TEST(RegisterPegasus, LeavesAModuleStoppedThatSomebodyStopped) {
  const FakeRoot root;
  addPegasus(root);
  ASSERT_EQ(root.doRegister().status, 0);
  root.write("/srv/repository/stopped.ZEBEthernetPortProvider", "");
  root.append(PROVIDER_FOLDER + kLibrary, ", improved");
  EXPECT_EQ(root.doRegister().out, "zeb-register: OpenPegasus: registered already\n");
  EXPECT_TRUE(root.has("/srv/repository/stopped.ZEBEthernetPortProvider"));
}

TEST(RegisterPegasus, AnUpgradeTakesTheOldRegistrationAwayFirst) {
  const FakeRoot root;
  addPegasus(root);
  ASSERT_EQ(root.doRegister().status, 0);
  root.calls();
  upgrade(root);
  const Outcome outcome = root.doRegister();
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.out, StartsWith(kPegasusDone));
  const auto calls = root.calls();
  ASSERT_THAT(calls, SizeIs(11));
  EXPECT_EQ(calls[8], "cimprovider -d -m ZEBEthernetPortProvider");
  EXPECT_EQ(calls[9], "cimprovider -r -m ZEBEthernetPortProvider");
  EXPECT_TRUE(root.has("/srv/repository/root#PG_InterOp/instances/class.ZEB_New"));
}

TEST(RegisterPegasus, AnUpgradeRemovesTheClassesThatItNoLongerHas) {
  const FakeRoot root;
  addPegasus(root);
  const std::string schema = root.read(kRegistration + "/ZEBEthernet.mof");
  const std::string registration = root.read(kRegistration + "/ZEBEthernetProvider.mof");
  upgrade(root);
  ASSERT_EQ(root.doRegister().status, 0);
  EXPECT_TRUE(root.has("/srv/repository/root#jxv/classes/ZEB_New"));
  root.write(kRegistration + "/ZEBEthernet.mof", schema);
  root.write(kRegistration + "/ZEBEthernetProvider.mof", registration);
  EXPECT_THAT(root.doRegister().out, StartsWith(kPegasusDone));
  EXPECT_FALSE(root.has("/srv/repository/root#jxv/classes/ZEB_New"));
  EXPECT_FALSE(root.has("/srv/repository/root#PG_InterOp/instances/class.ZEB_New"));
}

TEST(RegisterPegasus, DoesAgainWhatTheServerForgot) {
  const FakeRoot root;
  addPegasus(root);
  ASSERT_EQ(root.doRegister().status, 0);
  for (const std::string folder : {"root#PG_InterOp/instances", "root#jxv"}) {
    std::filesystem::remove_all(root.path("/srv/repository/" + folder));
  }
  std::filesystem::create_directories(root.path("/srv/repository/root#PG_InterOp/instances"));
  EXPECT_THAT(root.doRegister().out, StartsWith(kPegasusDone));
  EXPECT_TRUE(root.has(pegasusModule("root#PG_InterOp")));
  EXPECT_TRUE(root.has("/srv/repository/root#jxv/classes/ZEB_EthernetPort"));
}

}  // namespace
}  // namespace ZebManager
