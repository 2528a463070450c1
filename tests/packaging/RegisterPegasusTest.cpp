// zeb-register and zeb-unregister with OpenPegasus, alone and beside sfcb.
#include <gmock/gmock.h>

#include <filesystem>

#include "packaging/FakeRoot.h"

namespace ZebManager {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

constexpr const char* kLink = "/usr/lib/Pegasus/providers/libZEBEthernetPortProvider.so";
const std::string kData = "ROOT" DATA_FOLDER;
const std::string kAsk = "cimprovider -l -s";
const std::string kPublic =
    "cimmof -n root/jxv " + kData + "/registration/qualifiers.mof " + kData + "/schema/cim.mof";
const std::string kOwn = "cimmof -uc -n root/jxv " + kData + "/registration/ZEBEthernet.mof";

std::string provider(const std::string& interop) {
  return "cimmof -n " + interop + " " + kData + "/registration/ZEBEthernetProvider.mof";
}

TEST(RegisterPegasus, LoadsSchemaThenRegistration) {
  FakeRoot root;
  root.addPegasus();
  const Outcome outcome = root.doRegister();
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "zeb-register: OpenPegasus: registered\n");
  EXPECT_THAT(root.calls(), ElementsAre(kAsk, kPublic, kOwn, provider("root/PG_InterOp")));
  EXPECT_EQ(root.linkAt(kLink), PROVIDER_FOLDER "/libZEBEthernetPortProvider.so");
}

TEST(RegisterPegasus, FindsTheInteropNamespace) {
  FakeRoot root;
  root.addPegasus();
  std::filesystem::create_directories(root.path("/var/lib/Pegasus/repository/root#interop"));
  ASSERT_EQ(root.doRegister().status, 0);
  EXPECT_EQ(root.calls().back(), provider("root/interop"));
  ASSERT_EQ(root.doUnregister().status, 0);
  ASSERT_EQ(root.doRegister({"--interop", "interop"}).status, 0);
  EXPECT_EQ(root.calls().back(), provider("interop"));
}

TEST(RegisterPegasus, TakesTheOldModuleAwayFirst) {
  FakeRoot root;
  root.addPegasus();
  ASSERT_EQ(root.doRegister().status, 0);
  root.calls();
  const Outcome outcome = root.doRegister();
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(root.calls(), ElementsAre(kAsk, "cimprovider -d -m ZEBEthernetPortProvider",
                                        "cimprovider -r -m ZEBEthernetPortProvider", kPublic, kOwn,
                                        provider("root/PG_InterOp")));
}

TEST(RegisterPegasus, UnregisteringTakesModuleClassesAndLibraryAway) {
  FakeRoot root;
  root.addPegasus();
  ASSERT_EQ(root.doRegister().status, 0);
  root.calls();
  const Outcome outcome = root.doUnregister();
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "zeb-unregister: OpenPegasus: no longer registered\n");
  const auto calls = root.calls();
  ASSERT_THAT(calls, SizeIs(3 + 36));
  EXPECT_EQ(calls[2], "cimprovider -r -m ZEBEthernetPortProvider");
  EXPECT_EQ(calls[3], "cimcli dc ZEB_EthernetIndication -n root/jxv");
  // A subclass goes before its superclass.
  EXPECT_EQ(calls[3 + 33], "cimcli dc ZEB_AutoStartEthernetPort -n root/jxv");
  EXPECT_EQ(calls[3 + 34], "cimcli dc ZEB_AutoStart -n root/jxv");
  EXPECT_FALSE(root.has(kLink));

  const Outcome second = root.doUnregister();
  EXPECT_EQ(second.status, 0);
  EXPECT_EQ(second.out, "zeb-unregister: OpenPegasus: was not registered\n");
  EXPECT_THAT(root.calls(), ElementsAre(kAsk));
}

TEST(RegisterPegasus, SaysThatTheServerHasToRun) {
  FakeRoot root;
  root.addPegasus();
  root.addProgram("/usr/bin/cimprovider", "echo 'cannot connect'; exit 1");
  const Outcome outcome = root.doRegister();
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err,
            "zeb-register: OpenPegasus: does not answer; start it and call zeb-register again\n");
  EXPECT_FALSE(root.has(kLink));
}

TEST(RegisterPegasus, SaysWhatWasRefused) {
  FakeRoot root;
  root.addPegasus();
  root.addProgram("/usr/sbin/cimmof", "echo parsing; echo 'no rights'; echo; exit 4");
  const Outcome outcome = root.doRegister();
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "zeb-register: OpenPegasus: schema refused: no rights\n");
}

TEST(RegisterBoth, DoesTheOneWhenTheOtherFails) {
  FakeRoot root;
  root.addPegasus();
  root.addProgram("/usr/bin/sfcbrepos", "echo full >&2; exit 1");
  const Outcome outcome = root.doRegister();
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "zeb-register: sfcb: its repository could not be made: full\n");
  EXPECT_EQ(outcome.out, "zeb-register: OpenPegasus: registered\n");
}

}  // namespace
}  // namespace ZebManager
