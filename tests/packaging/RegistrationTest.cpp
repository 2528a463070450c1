// The registrations that the build makes hold every class that the plug-in serves, as the schema declares it.
#include <gmock/gmock.h>

#include <map>
#include <sstream>

#include "schema/ClassRepository.h"
#include "support/Content.h"
#include "support/TestFolder.h"

namespace ZebManager {
namespace {

using testing::HasSubstr;
using ZEB::test::contentOf;
using ZEB::test::TestFolder;

const ClassRepository& schema() {
  static const ClassRepository repository = ClassRepository::fromFile(SCHEMA "/zeb.mof");
  return repository;
}

struct Words {
  std::string instance, association, indication, method, separator;
};

/// Class name and what it is to be served as.
std::map<std::string, std::string> expectedTypes(const Words& words) {
  std::map<std::string, std::string> types;
  for (const auto& def : schema().classes()) {
    // The system itself is the object manager's.
    if (!def->name.starts_with("ZEB_") || def->abstract || def->name == "ZEB_ComputerSystem") continue;
    std::string& type = types[def->name];
    type = def->indication ? words.indication : words.instance;
    if (def->association) type += words.separator + words.association;
    if (!def->methods.empty()) type += words.separator + words.method;
  }
  return types;
}

using Stanza = std::map<std::string, std::string>;

/// Stanzas of `[Name]` and `key: value`, by name. A name that comes twice is a failure.
std::map<std::string, Stanza> readStanzas(const std::string& text) {
  std::map<std::string, Stanza> stanzas;
  std::string name;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("[")) {
      name = line.substr(1, line.find(']') - 1);
      EXPECT_FALSE(stanzas.contains(name)) << name;
      stanzas[name];
    } else if (const size_t colon = line.find(": "); colon != std::string::npos) {
      const size_t begin = line.find_first_not_of(' ');
      stanzas[name][line.substr(begin, colon - begin)] = line.substr(colon + 2);
    }
  }
  return stanzas;
}

/// Of each `instance of CLASS { name = value; … };` the class, as "class", and its values.
std::vector<Stanza> readInstances(const std::string& text) {
  std::vector<Stanza> instances;
  std::istringstream lines(text);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("instance of ")) {
      instances.push_back({{"class", line.substr(12, line.find(' ', 12) - 12)}});
    } else if (const size_t equals = line.find(" = "); equals != std::string::npos) {
      const size_t begin = line.find_first_not_of(' ');
      instances.back()[line.substr(begin, equals - begin)] =
          line.substr(equals + 3, line.rfind(';') - equals - 3);
    }
  }
  return instances;
}

TEST(Registration, HasAStanzaForEveryClassThatIsServed) {
  const auto stanzas = readStanzas(contentOf(REGISTRATION "/ZEBEthernet.reg"));
  const auto expected = expectedTypes({"instance", "association", "indication", "method", " "});
  EXPECT_EQ(stanzas.size(), expected.size());
  for (const auto& [name, type] : expected) {
    ASSERT_TRUE(stanzas.contains(name)) << name;
    EXPECT_EQ(stanzas.at(name), (Stanza{{"provider", "ZEBEthernetPort"},
                                        {"location", "ZEBEthernetPortProvider"},
                                        {"type", type},
                                        {"namespace", "root/jxv"},
                                        {"group", "ZEBEthernetPort"},
                                        {"unload", "never"}}))
        << name;
  }
}

TEST(Registration, ServesEachKindOfClassAsWhatItIs) {
  const auto types = expectedTypes({"instance", "association", "indication", "method", " "});
  EXPECT_EQ(types.at("ZEB_AutoStart"), "instance");
  EXPECT_EQ(types.at("ZEB_AutoStartEthernetPort"), "instance method");
  EXPECT_EQ(types.at("ZEB_EthernetTeamMember"), "instance association");
  EXPECT_EQ(types.at("ZEB_EthernetIndication"), "indication");
}

TEST(Registration, HasCapabilitiesForEveryClassThatIsServed) {
  const auto instances = readInstances(contentOf(REGISTRATION "/ZEBEthernetProvider.mof"));
  const auto expected = expectedTypes({"2", "3", "4", "5", ", "});
  ASSERT_EQ(instances.size(), 2 + expected.size());
  EXPECT_EQ(instances[0].at("class"), "PG_ProviderModule");
  EXPECT_EQ(instances[0].at("Name"), "\"ZEBEthernetPortProvider\"");
  EXPECT_EQ(instances[0].at("InterfaceType"), "\"CMPI\"");
  EXPECT_EQ(instances[0].at("InterfaceVersion"), "\"2.0.0\"");
  EXPECT_EQ(instances[0].at("Location"), "\"ZEBEthernetPortProvider\"");
  EXPECT_EQ(instances[1], (Stanza{{"class", "PG_Provider"},
                                  {"ProviderModuleName", "\"ZEBEthernetPortProvider\""},
                                  {"Name", "\"ZEBEthernetPort\""}}));
  std::map<std::string, std::string> types;
  for (size_t i = 2; i < instances.size(); ++i) {
    const Stanza& capabilities = instances[i];
    EXPECT_EQ(capabilities.at("class"), "PG_ProviderCapabilities");
    EXPECT_EQ(capabilities.at("ProviderModuleName"), "\"ZEBEthernetPortProvider\"");
    EXPECT_EQ(capabilities.at("ProviderName"), "\"ZEBEthernetPort\"");
    EXPECT_EQ(capabilities.at("Namespaces"), "{\"root/jxv\"}");
    EXPECT_EQ(capabilities.at("CapabilityID"), capabilities.at("ClassName"));
    const std::string& quoted = capabilities.at("ClassName");
    const std::string& braced = capabilities.at("ProviderType");
    types[quoted.substr(1, quoted.size() - 2)] = braced.substr(1, braced.size() - 2);
  }
  EXPECT_EQ(types, expected);
}

TEST(Registration, OneSchemaFileHoldsTheClassesInAnOrderThatCanBeRead) {
  const TestFolder folder;
  const std::string own = contentOf(REGISTRATION "/ZEBEthernet.mof");
  EXPECT_THAT(own, testing::Not(HasSubstr("#pragma")));
  const auto repository = ClassRepository::fromText(contentOf(SCHEMA "/cim.mof") + own, "ZEBEthernet.mof");
  std::vector<std::string> names;
  for (const auto& def : repository.classes()) names.push_back(def->name);
  std::vector<std::string> expected;
  for (const auto& def : schema().classes()) expected.push_back(def->name);
  EXPECT_EQ(names, expected);
}

TEST(Registration, DeclaresEveryQualifierThatTheSchemaUses) {
  const std::string declared = contentOf(REGISTRATION "/qualifiers.mof");
  for (const char* name : {"Abstract", "ArrayType", "Association", "Description", "Indication", "Key",
                           "Override", "Required", "Static", "Units", "ValueMap", "Values", "Write"}) {
    EXPECT_THAT(declared, HasSubstr("Qualifier " + std::string(name) + " : "));
  }
}

}  // namespace
}  // namespace ZebManager
