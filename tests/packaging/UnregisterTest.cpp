// What zeb-unregister takes away and what it leaves, also when an object manager does not go along.
#include <gmock/gmock.h>

#include "packaging/StandIns.h"

namespace ZebManager {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;

TEST(UnregisterSfcb, LeavesWhatWasThere) {
  const FakeRoot root;
  addSfcb(root);
  root.write("/usr/lib/sfcb/libSite.so", "");
  const Tree before = root.tree();
  ASSERT_EQ(root.doRegister().status, 0);
  root.calls();
  const Outcome outcome = root.doUnregister();
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(outcome.out, "zeb-unregister: sfcb: no longer registered; restart it\n");
  EXPECT_THAT(changes(before, root.tree()), IsEmpty());

  const Outcome second = root.doUnregister();
  EXPECT_EQ(second.status, 0);
  EXPECT_EQ(second.out, "zeb-unregister: sfcb: was not registered\n");
  EXPECT_THAT(changes(before, root.tree()), IsEmpty());
}

TEST(UnregisterSfcb, LeavesOtherClassesOfTheNamespace) {
  const FakeRoot root;
  addSfcb(root);
  root.write(kSfcbState + "/stage/mofs/root/jxv/site.mof", "class Site_Own {\n};\n");
  root.write(kSfcbSpace + "/classSchemas", "class Site_Own {\n};\n");
  const Tree before = root.tree();
  ASSERT_EQ(root.doRegister().status, 0);
  EXPECT_THAT(root.read(kSfcbSpace + "/classSchemas"), HasSubstr("class Site_Own"));
  const Outcome outcome = root.doUnregister();
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(changes(before, root.tree()), ElementsAre("+ /usr/lib/sfcb"));
}

TEST(UnregisterSfcb, LeavesANamespaceInWhichTheSiteStoredSomething) {
  const FakeRoot root;
  addSfcb(root);
  ASSERT_EQ(root.doRegister().status, 0);
  storeInSfcb(root, "root/jxv", "zeb_computersystem", "Name=\"host\"", "the host");
  const Outcome outcome = root.doUnregister();
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_THAT(outcome.out,
              HasSubstr(root.path(kSfcbSpace) +
                        " has instances that were stored there; it stays, and can be removed\n"));
  EXPECT_EQ(root.read(kSfcbSpace + "/zeb_computersystem"), "the host");
  EXPECT_THAT(root.read(kSfcbRegister), Not(HasSubstr("ZEBEthernetPortProvider")));
}

TEST(UnregisterSfcb, TakesFilesAndLinkAwayEvenWhenTheRepositoryCannotBeMade) {
  const FakeRoot root;
  addSfcb(root);
  root.write(kSfcbState + "/stage/mofs/root/jxv/site.mof", "class Site_Own {\n};\n");
  ASSERT_EQ(root.doRegister().status, 0);
  const std::string classes = root.read(kSfcbSpace + "/classSchemas");
  root.setHabits("refuses Site_Own");
  const Outcome outcome = root.doUnregister();
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err, HasSubstr("zeb-unregister: sfcb: its classes are still there, and '" +
                                     root.path("/usr/bin/sfcbrepos") + " -f' cannot make its repository:\n"));
  EXPECT_THAT(outcome.err, HasSubstr("site.mof:1: class Site_Own has a superclass that is not known\n"));
  EXPECT_EQ(root.read(kSfcbSpace + "/classSchemas"), classes);
  EXPECT_THAT(root.read(kSfcbRegister), Not(HasSubstr("ZEBEthernetPortProvider")));
  EXPECT_FALSE(root.has(kSfcbState + "/stage/regs/ZEBEthernet.reg"));
  EXPECT_FALSE(root.has("/usr/lib/sfcb" + kLibrary));
}

TEST(UnregisterPegasus, TakesModuleClassesAndLinkAway) {
  const FakeRoot root;
  addPegasus(root);
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
  EXPECT_FALSE(root.has(kPegasusProviders + kLibrary));
  EXPECT_FALSE(root.has(kPegasusState));

  const Outcome second = root.doUnregister();
  EXPECT_EQ(second.status, 0);
  EXPECT_EQ(second.out, "zeb-unregister: OpenPegasus: was not registered\n");
  EXPECT_THAT(root.calls(), ElementsAre(kPegasusAsk));
}

TEST(UnregisterPegasus, SaysWhichClassesTheServerKeeps) {
  const FakeRoot root;
  addPegasus(root);
  ASSERT_EQ(root.doRegister().status, 0);
  root.write("/srv/repository/root#jxv/classes/Site_Port", "class Site_Port : ZEB_EthernetPort {\n};\n");
  const Outcome outcome = root.doUnregister();
  EXPECT_EQ(outcome.status, 0);
  EXPECT_THAT(outcome.out, HasSubstr("OpenPegasus: does not give up ZEB_EthernetPort in root/jxv: "));
  EXPECT_FALSE(root.has("/srv/repository/root#jxv/classes/ZEB_AutoStart"));
  EXPECT_TRUE(root.has("/srv/repository/root#jxv/classes/ZEB_EthernetPort"));
}

TEST(UnregisterPegasus, TakesTheLinkAwayWhileTheServerIsStoppedAndSaysWhatIsLeft) {
  const FakeRoot root;
  addPegasus(root);
  ASSERT_EQ(root.doRegister().status, 0);
  root.setHabits("stopped");
  const Outcome outcome = root.doUnregister();
  EXPECT_EQ(outcome.status, 1);
  EXPECT_FALSE(root.has(kPegasusProviders + kLibrary));
  const std::string program = root.path("/usr/bin/cimprovider");
  EXPECT_EQ(outcome.err,
            "zeb-unregister: OpenPegasus: does not answer. The plug-in is gone from where it looks for "
            "providers; once it runs, this makes it forget the registration:\n  " +
                program + " -d -m ZEBEthernetPortProvider\n  " + program +
                " -r -m ZEBEthernetPortProvider\n");
}

}  // namespace
}  // namespace ZebManager
