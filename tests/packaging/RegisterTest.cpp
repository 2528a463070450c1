// zeb-register and zeb-unregister: what they are told, and with no object manager, or with two.
#include <gmock/gmock.h>

#include <regex>

#include "packaging/StandIns.h"

namespace ZebManager {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

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
  EXPECT_EQ(root.doRegister({"--pegasus-home", "there"}).err,
            "zeb-register: 'there' is no full path; --help tells more\n");
}

TEST(Register, WorksInARootThatThePlugInWasBuiltFor) {
  const FakeRoot root;
  addSfcb(root);
  const std::string program = SBIN_FOLDER "/zeb-register";
  root.write(program, std::regex_replace(root.read(program), std::regex("\n(plugin|data)=/"),
                                         "\n$1=" + root.path("") + "/"));
  const Outcome outcome = root.doRegister();
  EXPECT_EQ(outcome.status, 0) << outcome.err;
  EXPECT_EQ(root.linkAt("/usr/lib/sfcb" + kLibrary), root.path(PROVIDER_FOLDER) + kLibrary);
  EXPECT_FALSE(root.has(root.path("")));
}

TEST(Register, GivesTheOneItsTurnWhenTheOtherFails) {
  const FakeRoot root;
  addSfcb(root);
  addPegasus(root);
  root.setHabits("stops-after-removing");
  const Outcome outcome = root.doRegister();
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err, HasSubstr("zeb-register: sfcb: its repository could not be made"));
  EXPECT_THAT(outcome.out, AllOf(Not(HasSubstr("sfcb: registered")), HasSubstr("OpenPegasus: registered\n")));
}

TEST(Register, SaysThatNobodyServesTheComputerSystem) {
  const FakeRoot root;
  addSfcb(root);
  addPegasus(root);
  // A value that is the default says nothing.
  root.write("/etc/qv-zeb/qv-zeb.toml", "computer-system-path = \"\"\n");
  const Outcome outcome = root.doRegister();
  for (const std::string manager : {"sfcb", "OpenPegasus"}) {
    EXPECT_THAT(
        outcome.out,
        HasSubstr("zeb-register: " + manager +
                  ": nobody serves ZEB_ComputerSystem there, so associations with it lead nowhere; "
                  "computer-system-path in qv-zeb.toml names an instance that they lead to instead\n"));
  }
}

TEST(Register, SaysNothingOfTheComputerSystemOnceItIsConfigured) {
  const FakeRoot root;
  addSfcb(root);
  root.write("/etc/qv-zeb/qv-zeb.toml",
             "#level = 1\ncomputer-system-path = 'root/cimv2:Site_System.Name=\"server\"'\n");
  EXPECT_EQ(root.doRegister().out, "zeb-register: sfcb: registered; restart it\n");
}

}  // namespace
}  // namespace ZebManager
