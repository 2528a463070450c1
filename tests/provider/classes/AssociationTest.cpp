#include "ClassTest.h"
#include "classes/port/Associations.h"
#include "classes/team/Associations.h"

namespace ZEB::test {
namespace {

using CmpiCpp::CmpiObjectPath;

/// An end that is named alone.
CmpiObjectPath end(const char* name) {
  CmpiObjectPath path("root/jxv", "ZEB_End");
  path.addKey("Name", std::string_view(name));
  return path;
}
const std::string kFirst = R"(reference root/jxv:ZEB_End.Name="first")";
const std::string kSecond = R"(reference root/jxv:ZEB_End.Name="second")";

using Made = std::unique_ptr<AssociationFrame>;

template <class Class>
Made make(const Logger& logger, const CmpiObjectPath& first, const CmpiObjectPath& second) {
  return std::make_unique<Class>(logger, "root/jxv", first, second);
}

struct AssociationRow {
  const char* name;
  Made (*make)(const Logger&, const CmpiObjectPath&, const CmpiObjectPath&);
  Table keys;
  Table properties;

  friend void PrintTo(const AssociationRow& row, std::ostream* out) { *out << row.name; }
};

AssociationRow plain(const char* name, decltype(AssociationRow::make) make, const std::string& first,
                     const std::string& second, const Table& extras = {}) {
  const Table keys{{first, kFirst}, {second, kSecond}};
  Table properties = keys;
  properties.insert(properties.end(), extras.begin(), extras.end());
  return {name, make, keys, properties};
}

const Table kSoftwareStatus{{"ElementSoftwareStatus", "uint16[] {2, 6}"}};

#define CLASS(name) #name, make < name>
const auto kAssociations = testing::Values(
    plain(CLASS(ZEB_EthernetPortToLANEndpoint), "Antecedent", "Dependent"),
    plain(CLASS(ZEB_EthernetLANHostedAccessPoint), "Antecedent", "Dependent"),
    plain(CLASS(ZEB_IPBindsToEthernetLANEndpoint), "Antecedent", "Dependent", {{"FrameType", "uint16 1"}}),
    plain(CLASS(ZEB_EthIPHostedAccessPoint), "Antecedent", "Dependent"),
    plain(CLASS(ZEB_EthernetRemoteAccessAvailableToIPEndpoint), "Antecedent", "Dependent",
          {{"IsDefault", "boolean true"}, {"OrderOfAccess", "uint16 0"}}),
    plain(CLASS(ZEB_EthernetRemoteServiceHostedAccessPoint), "Antecedent", "Dependent"),
    plain(CLASS(ZEB_EthernetPortStatisticalData), "ManagedElement", "Stats"),
    plain(CLASS(ZEB_EthernetLANEndpointStatisticalData), "ManagedElement", "Stats"),
    plain(CLASS(ZEB_EthernetPortControllerEthernetPort), "Antecedent", "Dependent"),
    plain(CLASS(ZEB_EthernetControllerPhysicalPackageEthernetController), "Antecedent", "Dependent"),
    plain(CLASS(ZEB_EthernetControllerPhysicalPackageEthernetControllerLocation), "Element",
          "PhysicalLocation"),
    plain(CLASS(ZEB_EthernetDevice), "GroupComponent", "PartComponent"),
    plain(CLASS(ZEB_EthernetElementFirmwareIdentity), "Dependent", "Antecedent", kSoftwareStatus),
    plain(CLASS(ZEB_EthernetElementSoftwareIdentity), "Dependent", "Antecedent", kSoftwareStatus),
    plain(CLASS(ZEB_EthernetTeamToLANEndpoint), "Antecedent", "Dependent"),
    AssociationRow{CLASS(ZEB_HostedEthernetTeam),
                   {{"OwnedElement", kSecond}, {"OwningElement", kFirst}},
                   {{"OwningElement", kFirst}, {"OwnedElement", kSecond}}});
#undef CLASS

class AssociationTest : public ClassTest, public testing::WithParamInterface<AssociationRow> {
 protected:
  Made association() { return GetParam().make(recorded.logger, end("first"), end("second")); }
};

TEST_P(AssociationTest, HasAReferenceKeyForEachRole) {
  const auto path = association()->makeObjectPath();
  EXPECT_EQ(path.className().str(), GetParam().name);
  EXPECT_EQ(path.nameSpace(), "root/jxv");
  EXPECT_EQ(path.host(), hostName());
  EXPECT_EQ(keysOf(path), GetParam().keys);
}

TEST_P(AssociationTest, HasExactlyItsReferencesAndItsExtras) {
  EXPECT_EQ(propertiesOf(association()->makeInstance()), GetParam().properties);
}

TEST_P(AssociationTest, KnowsTheOtherEnd) {
  const Made made = association();
  EXPECT_EQ(made->otherEnd(end("first")), end("second"));
  EXPECT_EQ(made->otherEnd(end("second")), end("first"));
  EXPECT_TRUE(made->otherEnd(end("third")).empty());
}

TEST_P(AssociationTest, WithEqualEndsGivesTheFirst) {
  CmpiObjectPath first = end("same");
  CmpiObjectPath second = end("same");
  first.setHost("one");
  second.setHost("two");
  EXPECT_EQ(GetParam().make(recorded.logger, first, second)->otherEnd(end("same")).host(), "one");
}

TEST_P(AssociationTest, LogsItsLife) {
  association();
  const std::string source = "Test:" + std::string(GetParam().name);
  const std::vector<RecordingLogSink::Line> expected{{LogLevel::Info, source, "cxtor()"},
                                                     {LogLevel::Info, source, "dxtor()"}};
  EXPECT_EQ(recorded.sink->lines(), expected);
}

INSTANTIATE_TEST_SUITE_P(All, AssociationTest, kAssociations, kByName);

}  // namespace
}  // namespace ZEB::test
