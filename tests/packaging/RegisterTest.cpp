// zeb-register and zeb-unregister: with no object manager, and with sfcb.
#include <gmock/gmock.h>

#include "packaging/FakeRoot.h"

namespace ZebManager {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* kStagedSchema = "/var/lib/sfcb/stage/mofs/root/jxv/ZEBEthernet.mof";
constexpr const char* kStagedClasses = "/var/lib/sfcb/stage/regs/ZEBEthernet.reg";
constexpr const char* kLibrary = "/libZEBEthernetPortProvider.so";
constexpr const char* kRebuild = "sfcbrepos -f -s ROOT/var/lib/sfcb/stage -r ROOT/var/lib/sfcb/registration";

TEST(Register, FailsWithoutAnObjectManager) {
  const FakeRoot root;
  const Outcome outcome = root.doRegister();
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "zeb-register: found neither sfcb nor OpenPegasus; zebcim needs no registration\n");
  EXPECT_EQ(outcome.out, "");
}

TEST(Register, SucceedsWithoutOneWhenTold) {
  const FakeRoot root;
  const Outcome outcome = root.doUnregister({"--if-found"});
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.out, "zeb-unregister: found neither sfcb nor OpenPegasus; nothing to do\n");
}

TEST(Register, RefusesWhatItDoesNotKnow) {
  const FakeRoot root;
  EXPECT_EQ(root.doRegister({"--fast"}).status, 2);
  EXPECT_EQ(root.doRegister({"--fast"}).err, "zeb-register: unknown argument '--fast'; --help tells more\n");
  EXPECT_EQ(root.doRegister({"--interop"}).err, "zeb-register: --interop needs a value; --help tells more\n");
  EXPECT_EQ(root.doRegister({"--root", "/no/such"}).err,
            "zeb-register: no folder '/no/such'; --help tells more\n");
}

TEST(RegisterSfcb, StagesSchemaAndClassesAndMakesTheRepository) {
  FakeRoot root;
  root.addSfcb();
  const Outcome outcome = root.doRegister();
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "zeb-register: sfcb: registered; restart it\n");
  EXPECT_THAT(root.calls(), ElementsAre(kRebuild));
  EXPECT_EQ(root.read(kStagedSchema), root.read(DATA_FOLDER "/registration/ZEBEthernet.mof"));
  EXPECT_EQ(root.read(kStagedClasses), root.read(DATA_FOLDER "/registration/ZEBEthernet.reg"));
}

TEST(RegisterSfcb, MakesTheLibraryVisibleInItsFirstFolder) {
  FakeRoot root;
  root.addSfcb("/usr/lib/sfcb /usr/lib/more");
  ASSERT_EQ(root.doRegister().status, 0);
  EXPECT_EQ(root.linkAt(std::string("/usr/lib/sfcb") + kLibrary), std::string(PROVIDER_FOLDER) + kLibrary);
  ASSERT_EQ(root.doUnregister().status, 0);
  EXPECT_FALSE(root.has(std::string("/usr/lib/sfcb") + kLibrary));
}

TEST(RegisterSfcb, MakesNoLinkWhenItLooksInTheRightFolder) {
  FakeRoot root;
  root.addSfcb("/usr/lib/sfcb " PROVIDER_FOLDER);
  ASSERT_EQ(root.doRegister().status, 0);
  EXPECT_FALSE(root.has(std::string("/usr/lib/sfcb") + kLibrary));
  ASSERT_EQ(root.doUnregister().status, 0);
  EXPECT_TRUE(root.has(std::string(PROVIDER_FOLDER) + kLibrary));
}

TEST(RegisterSfcb, TwiceIsAsGoodAsOnce) {
  FakeRoot root;
  root.addSfcb();
  ASSERT_EQ(root.doRegister().status, 0);
  const Outcome second = root.doRegister();
  EXPECT_EQ(second.status, 0) << second.err;
  EXPECT_THAT(root.calls(), ElementsAre(kRebuild, kRebuild));
}

TEST(RegisterSfcb, UnregisteringLeavesOnlyWhatWasThere) {
  FakeRoot root;
  root.addSfcb();
  root.write("/var/lib/sfcb/stage/regs/other.reg", "[Other]\n");
  ASSERT_EQ(root.doRegister().status, 0);
  root.calls();
  const Outcome outcome = root.doUnregister();
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "zeb-unregister: sfcb: no longer registered; restart it\n");
  EXPECT_THAT(root.calls(), ElementsAre(kRebuild));
  EXPECT_FALSE(root.has(kStagedClasses));
  EXPECT_FALSE(root.has("/var/lib/sfcb/stage/mofs/root/jxv"));
  EXPECT_TRUE(root.has("/var/lib/sfcb/stage/regs/other.reg"));

  const Outcome second = root.doUnregister();
  EXPECT_EQ(second.status, 0);
  EXPECT_EQ(second.out, "zeb-unregister: sfcb: was not registered\n");
  EXPECT_THAT(root.calls(), IsEmpty());
}

TEST(RegisterSfcb, TakesEverythingBackWhenTheRepositoryCannotBeMade) {
  FakeRoot root;
  root.addProgram("/usr/local/bin/sfcbrepos", "echo compiling; echo no such superclass >&2; exit 3");
  const Outcome outcome = root.doRegister();
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "zeb-register: sfcb: its repository could not be made: no such superclass\n");
  EXPECT_EQ(outcome.out, "");
  EXPECT_FALSE(root.has(kStagedSchema));
  EXPECT_FALSE(root.has(kStagedClasses));
}

}  // namespace
}  // namespace ZebManager
