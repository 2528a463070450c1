#include <gmock/gmock.h>

#include "ClassTest.h"
#include "Plugin.h"

// The computer system at the end of associations: the plug-in's own name for it, or the one that is
// configured.

namespace ZEB::test {
namespace {

using CmpiCpp::CmpiObjectPath;
using testing::Contains;
using testing::Each;
using testing::IsEmpty;
using testing::SizeIs;

/// A class with the system at an end, and how many of it a host with three teams has.
struct SystemRow {
  const char* name;
  const char* role;
  const char* otherRole;
  std::size_t count;
};

constexpr SystemRow kSystemRows[] = {
    {"ZEB_EthernetDevice", "GroupComponent", "PartComponent", 6},
    {"ZEB_EthernetLANHostedAccessPoint", "Antecedent", "Dependent", 12},
    {"ZEB_EthIPHostedAccessPoint", "Antecedent", "Dependent", 6},
    {"ZEB_EthernetRemoteServiceHostedAccessPoint", "Antecedent", "Dependent", 3},
    {"ZEB_HostedEthernetTeam", "OwningElement", "OwnedElement", 3},
    {"ZEB_EthernetGroupHostedCollection", "Antecedent", "Dependent", 1}};
constexpr std::size_t kAll = 31;

struct Configured {
  const char* name;
  const char* value;
  CmpiObjectPath system;

  friend void PrintTo(const Configured& configured, std::ostream* out) { *out << configured.name; }
};

CmpiObjectPath systemOf(const char* nameSpace, const char* className, const std::string& name) {
  return {nameSpace, className, "", {{"CreationClassName", className}, {"Name", name}}};
}

class SystemPathTest : public ProviderTest, public testing::WithParamInterface<Configured> {
 protected:
  SystemPathTest() {
    configure("ZEB_COMPUTER_SYSTEM_PATH", GetParam().value);
    serve("teams.json");
    broker.declareClass("ZEB_ComputerSystem", "CIM_ComputerSystem", "root/jxv");
    broker.declareClass("ZEB_EthernetDevice", "CIM_SystemDevice", "root/jxv");
    broker.declareClass("Site_System", "CIM_ComputerSystem", "root/cimv2");
  }
  ~SystemPathTest() override { configure("ZEB_COMPUTER_SYSTEM_PATH", ""); }

  const CmpiObjectPath& system() const { return GetParam().system; }
  /// As an object manager passes it on that was asked in the namespace which the plug-in is registered in.
  CmpiObjectPath asked() const {
    CmpiObjectPath path = system();
    path.setNameSpace("root/jxv");
    return path;
  }
};

TEST_P(SystemPathTest, IsTheEndOfEveryAssociationWithTheSystem) {
  Plugin plugin(broker);
  for (const SystemRow& row : kSystemRows) {
    const auto associations = plugin.instances(row.name);
    EXPECT_THAT(associations, SizeIs(row.count)) << row.name;
    for (const auto& association : associations) {
      EXPECT_EQ(association.getProperty(row.role).asReference(), system()) << row.name;
      EXPECT_EQ(association.path().getKey(row.role).asReference(), system()) << row.name;
      EXPECT_EQ(plugin.get(association.path()).size(), 1U) << row.name;
    }
  }
}

TEST_P(SystemPathTest, LeadsToWhatTheSystemHas) {
  Plugin plugin(broker);
  for (const CmpiObjectPath& path : {system(), asked()}) {
    for (const SystemRow& row : kSystemRows) {
      const AssociationFilter filter{
          .associationClass = row.name, .role = row.role, .resultRole = row.otherRole};
      EXPECT_THAT(plugin.associators(path, filter), SizeIs(row.count)) << row.name;
      EXPECT_THAT(plugin.associatorNames(path, filter), SizeIs(row.count)) << row.name;
      EXPECT_THAT(plugin.references(path, filter), SizeIs(row.count)) << row.name;
      EXPECT_THAT(plugin.referenceNames(path, filter), SizeIs(row.count)) << row.name;
    }
    EXPECT_THAT(plugin.associatorNames(path), SizeIs(kAll));
    EXPECT_THAT(plugin.references(path), SizeIs(kAll));
  }
  EXPECT_THAT(plugin.references(asked(), {.associationClass = "CIM_SystemDevice"}), SizeIs(6));
}

TEST_P(SystemPathTest, IsReachedFromWhatItHas) {
  Plugin plugin(broker);
  for (const char* className : {"ZEB_EthernetPort", "ZEB_EthernetTeam"}) {
    for (const CmpiObjectPath& path : plugin.names(className)) {
      EXPECT_THAT(plugin.associatorNames(path), Contains(system())) << path.str();
      const auto systems = plugin.associatorNames(path, {.resultClass = "CIM_ComputerSystem"});
      EXPECT_THAT(systems, SizeIs(1)) << path.str();
      EXPECT_THAT(systems, Each(system()));
    }
  }
}

TEST_P(SystemPathTest, OtherSystemsHaveNothing) {
  Plugin plugin(broker);
  for (const char* className : {"ZEB_ComputerSystem", "Site_System"}) {
    for (const char* nameSpace : {"root/jxv", "root/cimv2"}) {
      EXPECT_THAT(plugin.referenceNames(systemOf(nameSpace, className, "another")), IsEmpty());
    }
  }
}

INSTANTIATE_TEST_SUITE_P(
    All, SystemPathTest,
    testing::Values(Configured{"Default", "", systemOf("root/jxv", "ZEB_ComputerSystem", hostName())},
                    Configured{
                        "Configured",
                        R"(root/cimv2:Site_System.CreationClassName="Site_System",Name="server.example")",
                        systemOf("root/cimv2", "Site_System", "server.example")}),
    kByName);

}  // namespace
}  // namespace ZEB::test
