// zeb-register and zeb-unregister with OpenPegasus, alone and beside sfcb.
#include <gmock/gmock.h>

#include <algorithm>
#include <filesystem>

#include "packaging/FakeRoot.h"
#include "schema/ClassRepository.h"

namespace ZebManager {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::UnorderedElementsAreArray;

constexpr const char* kLink = "/usr/lib/Pegasus/providers/libZEBEthernetPortProvider.so";
const std::string kData = "ROOT" DATA_FOLDER;
const std::string kAsk = "cimprovider -l -s";
const std::string kPublic =
    "cimmof -n root/jxv " + kData + "/registration/qualifiers.mof " + kData + "/schema/cim.mof";
const std::string kOwn = "cimmof -uc -n root/jxv " + kData + "/registration/ZEBEthernet.mof";

std::string provider(const std::string& interop) {
  return "cimmof -n " + interop + " " + kData + "/registration/ZEBEthernetProvider.mof";
}

/// The calls are one for each class of the plug-in's own, a subclass before its superclass.
void expectEveryClassTakenAway(const std::vector<std::string>& calls) {
  const auto callFor = [](const std::string& name) { return "cimcli dc " + name + " -n root/jxv"; };
  const auto schema = ClassRepository::fromFile(SCHEMA "/zeb.mof");
  std::vector<std::string> expected;
  for (const auto& def : schema.classes()) {
    if (!def->name.starts_with("ZEB_")) continue;
    expected.push_back(callFor(def->name));
    if (!def->superclass->name.starts_with("ZEB_")) continue;
    const auto own = std::ranges::find(calls, callFor(def->name));
    EXPECT_NE(std::find(own, calls.end(), callFor(def->superclass->name)), calls.end()) << def->name;
  }
  EXPECT_THAT(calls, UnorderedElementsAreArray(expected));
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
  ASSERT_GT(calls.size(), 3U);
  EXPECT_EQ(calls[2], "cimprovider -r -m ZEBEthernetPortProvider");
  expectEveryClassTakenAway({calls.begin() + 3, calls.end()});
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
