// zeb-register with sfcb: what it does to it when it takes what it is given.
#include <gmock/gmock.h>

#include <filesystem>

#include "packaging/StandIns.h"

namespace ZebManager {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

const std::string kSfcbDone = "zeb-register: sfcb: registered; restart it\n";

long stanzas(const FakeRoot& root, const std::string& file = kSfcbRegister) {
  const std::string text = root.read(file);
  const std::string line = "   location: ZEBEthernetPortProvider\n";
  long count = 0;
  for (size_t at = 0; (at = text.find(line, at)) != std::string::npos; ++at) ++count;
  return count;
}

TEST(RegisterSfcb, AddsANamespaceAndStanzasAndTouchesNothingElse) {
  const FakeRoot root;
  addSfcb(root);
  const std::string others = root.read(kSfcbRegister);
  const Tree before = root.tree();
  const Outcome outcome = root.doRegister();
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.out, StartsWith(kSfcbDone));
  EXPECT_THAT(
      changes(before, root.tree()),
      ElementsAre("+ /usr/lib/sfcb", "+ /usr/lib/sfcb" + kLibrary, "~ " + kSfcbRegister, "+ " + kSfcbSpace,
                  "+ " + kSfcbSpace + "/classSchemas", "+ " + kSfcbState + "/stage/mofs/root/jxv",
                  "+ " + kSfcbState + "/stage/mofs/root/jxv/ZEBEthernet.mof",
                  "+ " + kSfcbState + "/stage/regs/ZEBEthernet.reg"));
  EXPECT_EQ(root.read(kSfcbSpace + "/classSchemas"), root.read(kRegistration + "/ZEBEthernet.mof"));
  EXPECT_EQ(root.read(kSfcbRegister), others + root.read(kRegistration + "/ZEBEthernet.reg"));
  EXPECT_EQ(stanzas(root), 35);
  EXPECT_EQ(root.linkAt("/usr/lib/sfcb" + kLibrary), PROVIDER_FOLDER + kLibrary);
}

TEST(RegisterSfcb, LeavesTheListenersOfTheSiteAlone) {
  const FakeRoot root;
  addSfcb(root);
  storeInSfcb(root, "root/interop", "cim_listenerdestinationcimxml", "Name=\"console\"", "SequenceContext=x");
  storeInSfcb(root, "root/unstaged", "site_thing", "Id=1", "of the site");
  const Tree before = root.tree();
  const Outcome outcome = root.doRegister();
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  for (const std::string& change : changes(before, root.tree())) {
    EXPECT_THAT(change, Not(HasSubstr("root/interop"))) << change;
    EXPECT_THAT(change, Not(HasSubstr("root/unstaged"))) << change;
  }
}

TEST(RegisterSfcb, TakesTheFoldersThatItWasBuiltFor) {
  const FakeRoot root;
  addSfcb(root, "/usr/local", "/usr/local/lib/sfcb /usr/local/lib");
  const Outcome outcome = root.doRegister();
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(stanzas(root, "/usr/local" + kSfcbRegister), 35);
  EXPECT_TRUE(root.has("/usr/local" + kSfcbSpace + "/classSchemas"));
  EXPECT_TRUE(root.has("/usr/local" + kSfcbState + "/stage/regs/ZEBEthernet.reg"));
  EXPECT_EQ(root.linkAt("/usr/local/lib/sfcb" + kLibrary), PROVIDER_FOLDER + kLibrary);
  EXPECT_FALSE(root.has("/var"));
}

TEST(RegisterSfcb, WorksInARootThatItWasBuiltFor) {
  const FakeRoot root;
  addSfcb(root, root.path(""), root.path("/lib/sfcb"));
  // However it is written.
  const Outcome outcome = root.doRegister({"--root", root.path("/.")});
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(stanzas(root), 35);
  EXPECT_TRUE(root.has(kSfcbSpace + "/classSchemas"));
  EXPECT_EQ(root.linkAt("/lib/sfcb" + kLibrary), PROVIDER_FOLDER + kLibrary);
  EXPECT_FALSE(root.has(root.path("")));
}

TEST(RegisterSfcb, MakesTheWholeWhereThereIsNoRepositoryYet) {
  const FakeRoot root;
  addSfcb(root);
  std::filesystem::remove_all(root.path(kSfcbState + "/registration"));
  std::filesystem::create_directories(root.path(kSfcbState + "/registration"));
  const Outcome outcome = root.doRegister();
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(stanzas(root), 35);
  EXPECT_THAT(root.read(kSfcbRegister), HasSubstr("[Site_Thing]"));
  for (const std::string space : {"jxv", "interop", "cimv2", "site"}) {
    EXPECT_TRUE(root.has(kSfcbState + "/registration/repository/root/" + space + "/classSchemas")) << space;
  }
}

TEST(RegisterSfcb, PrefersTheFolderOfThePlugIn) {
  const FakeRoot root;
  addSfcb(root, "", "/usr/lib/sfcb " PROVIDER_FOLDER);
  ASSERT_EQ(root.doRegister().status, 0);
  EXPECT_FALSE(root.has("/usr/lib/sfcb"));
  ASSERT_EQ(root.doUnregister().status, 0);
  EXPECT_TRUE(root.has(PROVIDER_FOLDER + kLibrary));
}

TEST(RegisterSfcb, PrefersAFolderThatThereIs) {
  const FakeRoot root;
  addSfcb(root, "", "/usr/lib/none /usr/lib/some");
  root.write("/usr/lib/some/libSite.so", "");
  ASSERT_EQ(root.doRegister().status, 0);
  EXPECT_EQ(root.linkAt("/usr/lib/some" + kLibrary), PROVIDER_FOLDER + kLibrary);
}

TEST(RegisterSfcb, DoesNothingWhenNothingChanged) {
  const FakeRoot root;
  addSfcb(root);
  ASSERT_EQ(root.doRegister().status, 0);
  root.calls();
  const Tree before = root.tree();
  const Outcome second = root.doRegister();
  EXPECT_EQ(second.status, 0) << second.err;
  EXPECT_EQ(second.out, "zeb-register: sfcb: registered already; restart it when the plug-in is new\n");
  EXPECT_THAT(changes(before, root.tree()), IsEmpty());
  EXPECT_THAT(root.calls(), Each(StartsWith("sfcbrepos -h")));
}

TEST(RegisterSfcb, DoesAgainWhatSomebodyTookAway) {
  for (const std::string& lost : {kSfcbSpace + "/classSchemas", kSfcbRegister, "/usr/lib/sfcb" + kLibrary}) {
    const FakeRoot root;
    addSfcb(root);
    ASSERT_EQ(root.doRegister().status, 0);
    std::filesystem::remove(root.path(lost));
    const Outcome outcome = root.doRegister();
    EXPECT_EQ(outcome.status, 0) << outcome.err;
    EXPECT_THAT(outcome.out, StartsWith(kSfcbDone)) << lost;
    EXPECT_TRUE(root.has(lost)) << lost;
    EXPECT_EQ(stanzas(root), 35) << lost;
  }
}

TEST(RegisterSfcb, AnUpgradeKeepsWhatIsStoredInTheNamespace) {
  const FakeRoot root;
  addSfcb(root);
  ASSERT_EQ(root.doRegister().status, 0);
  storeInSfcb(root, "root/jxv", "zeb_computersystem", "Name=\"host\"", "the host");
  upgrade(root);
  const Outcome outcome = root.doRegister();
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(stanzas(root), 36);
  EXPECT_THAT(root.read(kSfcbSpace + "/classSchemas"), HasSubstr("class ZEB_New"));
  EXPECT_EQ(root.read(kSfcbSpace + "/zeb_computersystem"), "the host");
}

}  // namespace
}  // namespace ZebManager
