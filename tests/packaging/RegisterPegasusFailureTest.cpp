// zeb-register with an OpenPegasus that refuses, or that is interrupted: it is afterwards as it was before.
#include <gmock/gmock.h>

#include "packaging/StandIns.h"

namespace ZebManager {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

/// Of a site that has neither plug-in nor namespace, of one that has classes of its own there, and of one
/// that has an older plug-in.
enum class Has { nothing, classes, older };

class RegisterPegasusFailure : public testing::TestWithParam<Has> {
 protected:
  RegisterPegasusFailure() {
    addPegasus(root);
    if (GetParam() == Has::nothing) return;
    const std::string space = "/srv/repository/root#jxv";
    root.write(space + "/qualifiers/Key", "Qualifier Key : boolean = false;\n");
    root.write(space + "/classes/CIM_ManagedElement", "class CIM_ManagedElement {\n  // The site's.\n};\n");
    root.write(space + "/classes/Site_Own", "class Site_Own : CIM_ManagedElement {\n};\n");
    root.write(space + "/instances/own", "stored\n");
    if (GetParam() == Has::classes) return;
    EXPECT_EQ(root.doRegister().status, 0);
    upgrade(root);
    const std::string schema = root.read(kRegistration + "/ZEBEthernet.mof");
    root.write(kRegistration + "/ZEBEthernet.mof",
               std::string(schema).replace(schema.find("class ZEB_AutoStart "), 0, "// another\n"));
  }
  Outcome registerWith(const std::string& habits, const std::vector<std::string>& options = {}) {
    root.setHabits(habits);
    before = root.tree();
    const Outcome outcome = root.doRegister(options);
    EXPECT_THAT(changes(before, root.tree()), IsEmpty());
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, Not(HasSubstr("is not back")));
    return outcome;
  }

  const FakeRoot root;
  Tree before;
};
INSTANTIATE_TEST_SUITE_P(Sites, RegisterPegasusFailure,
                         testing::Values(Has::nothing, Has::classes, Has::older));

TEST_P(RegisterPegasusFailure, WhenItDoesNotRun) {
  const Outcome outcome = registerWith("stopped");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.err,
            "zeb-register: OpenPegasus: does not answer; start it and call zeb-register again\n");
}

TEST_P(RegisterPegasusFailure, WhenNoNamespaceHasTheRegistrations) {
  const Outcome outcome = registerWith("", {"--interop", "root/cimv2"});
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err,
              HasSubstr("zeb-register: OpenPegasus: no PG_ProviderModule in root/cimv2; --interop names"));
}

TEST_P(RegisterPegasusFailure, WhenAClassIsRefused) {
  const std::string name = GetParam() == Has::older ? "ZEB_New" : "ZEB_EthernetTeam";
  const Outcome outcome = registerWith("refuses " + name);
  EXPECT_EQ(outcome.status, 1);
  const std::string schema = root.read(kRegistration + "/ZEBEthernet.mof");
  const std::string above = schema.substr(0, schema.find("\nclass " + name + " ") + 1);
  const auto line = std::to_string(std::count(above.begin(), above.end(), '\n') + 1);
  EXPECT_THAT(outcome.err,
              AllOf(HasSubstr("zeb-register: OpenPegasus: the schema was refused:\n"),
                    HasSubstr("  Parsing error: " + root.path(kRegistration) + "/ZEBEthernet.mof:" + line +
                              ": syntax error before " + name + "\n"),
                    Not(HasSubstr("Warning"))));
}

TEST_P(RegisterPegasusFailure, WhenAPublicClassIsRefused) {
  const Outcome outcome = registerWith("refuses CIM_EthernetPort");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err, HasSubstr("cim.mof:"));
}

TEST_P(RegisterPegasusFailure, WhenTheRegistrationIsRefusedHalfWay) {
  const Outcome outcome = registerWith(GetParam() == Has::older ? "refuses-instance ZEB_New"
                                                                : "refuses-instance ZEB_EthernetTeam");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err,
              AllOf(HasSubstr("zeb-register: OpenPegasus: the registration was refused:\n  Parsing error: " +
                              root.path(kRegistration) + "/ZEBEthernetProvider.mof:"),
                    HasSubstr(" has another provider\n")));
}

TEST_P(RegisterPegasusFailure, WhenItIsInterrupted) {
  const Outcome outcome = registerWith("interrupted TERM");
  EXPECT_EQ(outcome.status, 130);
  EXPECT_FALSE(root.goesOn());
}

TEST_P(RegisterPegasusFailure, WhenTheOldModuleDoesNotGo) {
  if (GetParam() != Has::older) return;
  const Outcome outcome = registerWith("keeps-module");
  EXPECT_EQ(outcome.status, 1);
  EXPECT_THAT(outcome.err,
              HasSubstr("the registration that it has was not removed:\n  The module is busy.\n"));
}

}  // namespace
}  // namespace ZebManager
