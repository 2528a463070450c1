// zeb-register with an sfcb that refuses, loses or is interrupted: it is afterwards as it was before, byte
// for byte.
#include <gmock/gmock.h>

#include "packaging/StandIns.h"

namespace ZebManager {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// The line of a file that declares a class.
std::string lineOf(const std::string& className, const std::string& text) {
  const std::string before = text.substr(0, text.find("\nclass " + className + " ") + 1);
  return std::to_string(std::count(before.begin(), before.end(), '\n') + 1);
}

/// Of a site that has no plug-in yet, and of one that has an older one.
class RegisterSfcbFailure : public testing::TestWithParam<bool> {
 protected:
  RegisterSfcbFailure() {
    addSfcb(root);
    storeInSfcb(root, "root/interop", "cim_listenerdestinationcimxml", "Name=\"a b\"", "SequenceContext");
    if (!GetParam()) return;
    EXPECT_EQ(root.doRegister().status, 0);
    storeInSfcb(root, "root/jxv", "site_thing", "Id=1", "first");
    storeInSfcb(root, "root/jxv", "site_thing", "Id=2,Name=\"x y\"", "second");
    upgrade(root);
  }
  Outcome registerWith(const std::string& habits) {
    root.setHabits(habits);
    before = root.tree();
    const Outcome outcome = root.doRegister();
    EXPECT_THAT(changes(before, root.tree()), IsEmpty());
    EXPECT_EQ(outcome.out, "");
    return outcome;
  }

  const FakeRoot root;
  Tree before;
};
INSTANTIATE_TEST_SUITE_P(OfNone, RegisterSfcbFailure, testing::Values(false));
INSTANTIATE_TEST_SUITE_P(OfAnOlderOne, RegisterSfcbFailure, testing::Values(true));

TEST_P(RegisterSfcbFailure, WhenAClassIsRefused) {
  const Outcome outcome = registerWith("refuses ZEB_EthernetTeam");
  EXPECT_EQ(outcome.status, 1);
  const std::string schema = kRegistration + "/ZEBEthernet.mof";
  EXPECT_THAT(
      outcome.err,
      AllOf(HasSubstr("zeb-register: sfcb: its repository could not be made"),
            HasSubstr("\n  " + root.path(schema) + ":" + lineOf("ZEB_EthernetTeam", root.read(schema)) +
                      ": class ZEB_EthernetTeam has a superclass that is not known\n"),
            HasSubstr("\n  Failed compiling the MOF files.\n"), Not(HasSubstr("warning"))));
}

TEST_P(RegisterSfcbFailure, WhenItStopsAfterRemovingWhatThereWas) {
  const Outcome outcome = registerWith("stops-after-removing");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err, HasSubstr("\n  No space left on device\n"));
}

TEST_P(RegisterSfcbFailure, WhenItStopsAfterWritingAPart) {
  EXPECT_EQ(registerWith("writes-part").status, 1);
}

TEST_P(RegisterSfcbFailure, WhenItMakesNothingAndCallsThatASuccess) {
  const Outcome outcome = registerWith("makes-nothing");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err, HasSubstr("zeb-register: sfcb: sfcbrepos made no classes"));
}

TEST_P(RegisterSfcbFailure, WhenItHasNoStage) {
  std::filesystem::remove(root.path("/var/lib/sfcb/stage/default.reg"));
  const Outcome outcome = registerWith("");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err, "zeb-register: sfcb: has no stage in " + root.path("/var/lib/sfcb/stage") + "\n");
}

TEST_P(RegisterSfcbFailure, WhenItIsInterrupted) {
  const Outcome outcome = registerWith("interrupted TERM");
  EXPECT_EQ(outcome.status, 130);
  EXPECT_FALSE(root.goesOn());
}

TEST_P(RegisterSfcbFailure, WhenTheLinkCannotBeMade) {
  root.write("/etc/sfcb/sfcb.cfg", "providerDirs: /usr/bin/sfcbrepos/not/a/folder\n");
  EXPECT_EQ(registerWith("").status, 1);
}

/// Power that fails in the middle of putting things in place.
TEST_P(RegisterSfcbFailure, WhenAnEarlierRunWasKilled) {
  before = root.tree();
  const std::string left = kSfcbRegistration + "/.zeb-register.abc123";
  std::filesystem::create_directories(root.path(left));
  const std::string old = root.read(kSfcbRegistration + "/providerRegister");
  root.write(left + "/journal", "old 1 " + root.path(kSfcbRegistration + "/providerRegister") + "\nnew 2 " +
                                    root.path("/usr/lib/half") + "\nold 3 " +
                                    root.path("/etc/sfcb/sfcb.cfg") + "\n");
  root.write(left + "/old.1", old);
  root.write(kSfcbRegistration + "/providerRegister", "half");
  root.write("/usr/lib/half", "half");
  root.setHabits("stops-after-removing");
  EXPECT_EQ(root.doRegister().status, 1);
  EXPECT_THAT(changes(before, root.tree()), IsEmpty());
}

class RegisterSfcbLoss : public RegisterSfcbFailure {};
INSTANTIATE_TEST_SUITE_P(OfAnOlderOne, RegisterSfcbLoss, testing::Values(true));

TEST_P(RegisterSfcbLoss, IsRefusedUnlessForced) {
  const Outcome outcome = registerWith("loses site_thing");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err,
            "zeb-register: sfcb: its repository could not be made without losing what is stored in root/jxv, "
            "which takes --force:\n  site_thing Id=1\n  site_thing Id=2,Name=\"x y\"\n");
  EXPECT_EQ(root.doRegister({"--force"}).status, 0);
  EXPECT_FALSE(root.has(kSfcbSpace + "/site_thing"));
  EXPECT_THAT(root.read(kSfcbSpace + "/classSchemas"), HasSubstr("class ZEB_New"));
}

TEST_P(RegisterSfcbLoss, OfWhatCannotBeMigratedIsRefusedUnlessForced) {
  storeInSfcb(root, "root/jxv", "cim_listenerdestinationcimxml", "Name=\"b\"", "SequenceContext");
  const Outcome outcome = registerWith("");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err,
            "zeb-register: sfcb: its repository could not be made; --force leaves out what is stored in "
            "root/jxv:\n  bad property name SequenceContext\n  Failed compiling the MOF files.\n");
  EXPECT_EQ(root.doRegister({"--force"}).status, 0);
  EXPECT_FALSE(root.has(kSfcbSpace + "/cim_listenerdestinationcimxml"));
}

}  // namespace
}  // namespace ZebManager
