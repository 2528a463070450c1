// The plug-in itself in the embedded object manager, on every recorded host: whatever it serves agrees with
// the schema and with itself.
#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <map>

#include "plugin/PluginLibrary.h"
#include "posix/TemporaryFolder.h"
#include "values/CallMemory.h"
#include "values/ObjectPathText.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

using testing::IsEmpty;

/// The class whose enumeration is answered with an instance that cannot be asked for.
constexpr char kAutoStart[] = "ZEB_AutoStart";

std::vector<std::string> snapshots() {
  std::vector<std::string> found;
  for (const auto& entry : std::filesystem::directory_iterator(ZEB_SNAPSHOTS)) {
    if (entry.path().extension() == ".json") found.push_back(entry.path().stem().string());
  }
  std::sort(found.begin(), found.end());
  return found;
}

const PathBody& pathOf(const CMPIData& item) {
  return item.type == CMPI_ref ? as<ObjectPath>(item.value.ref)->body()
                               : *as<Instance>(item.value.inst)->body().path;
}

std::vector<std::string> pathsOf(const Reply& reply) {
  std::vector<std::string> paths;
  for (const CMPIData& item : reply.items()) paths.push_back(formatPath(pathOf(item)));
  return paths;
}

class RealPlugin : public testing::TestWithParam<std::string> {
 protected:
  void SetUp() override {
    setenv("ZEB_SOURCE_FILE", (std::string(ZEB_SNAPSHOTS) + "/" + GetParam() + ".json").c_str(), 1);
    setenv("ZEB_STORE_DIR", folder.path().c_str(), 1);
    setenv("ZEB_RUN_DIR", folder.path().c_str(), 1);
    setenv("ZEB_LOG_LEVEL", "error", 1);
    library = std::make_unique<PluginLibrary>(broker, ZEB_REAL_PLUGIN);
  }

  ObjectPath& parsed(const std::string& text) { return *parsePath(arena, repository, kNameSpace, text); }
  std::vector<const ClassDef*> served() const {
    std::vector<const ClassDef*> found;
    for (const auto& def : repository.classes()) {
      if (def->name.starts_with("ZEB_") && !def->indication) found.push_back(def.get());
    }
    return found;
  }

  const ZEB::TemporaryFolder folder;
  ClassRepository repository = ClassRepository::fromFile(ZEB_SCHEMA_FILE);
  Broker broker{repository};
  std::unique_ptr<PluginLibrary> library;
  Arena arena;
};

TEST_P(RealPlugin, SetsNoPropertyThatTheSchemaDoesNotAllow) {
  for (const ClassDef* def : served()) {
    EXPECT_EQ(broker.provider().enumerateInstances(def->name).code, CMPI_RC_OK) << def->name;
  }
  EXPECT_THAT(broker.refusals().take(), IsEmpty());
}

TEST_P(RealPlugin, NamesAndInstancesAgree) {
  for (const ClassDef* def : served()) {
    if (def->name == kAutoStart) continue;
    EXPECT_EQ(pathsOf(broker.provider().enumerateInstances(def->name)),
              pathsOf(broker.provider().enumerateInstanceNames(def->name)));
  }
}

TEST_P(RealPlugin, HandsOverTheSameInstances) {
  for (const ClassDef* def : served()) {
    std::vector<std::string> handed;
    const Reply reply = broker.provider().forEachInstance(def->name, nullptr, [&](const InstanceBody& body) {
      handed.push_back(formatPath(*body.path));
      EXPECT_GT(body.properties.count, 0U);
    });
    EXPECT_EQ(reply.code, CMPI_RC_OK);
    EXPECT_THAT(reply.items(), IsEmpty());
    EXPECT_EQ(handed, pathsOf(broker.provider().enumerateInstances(def->name)));
  }
}

TEST_P(RealPlugin, EveryPathHasTheKeysOfItsClassAndReadsBack) {
  for (const ClassDef* def : served()) {
    for (const std::string& path : pathsOf(broker.provider().enumerateInstances(def->name))) {
      EXPECT_EQ(formatPath(parsed(path).body()), path);
    }
  }
}

TEST_P(RealPlugin, EveryInstanceCanBeAskedForByItsPath) {
  for (const ClassDef* def : served()) {
    if (def->name == kAutoStart) continue;
    for (const std::string& path : pathsOf(broker.provider().enumerateInstances(def->name))) {
      const Reply reply = broker.provider().getInstance(parsed(path));
      EXPECT_EQ(reply.code, CMPI_RC_OK) << path;
      ASSERT_EQ(reply.items().size(), 1U);
      EXPECT_EQ(formatPath(pathOf(reply.items()[0])), path);
    }
  }
}

TEST_P(RealPlugin, ASuperclassFindsEveryPort) {
  const std::map<std::string, std::size_t> ports = {
      {"bare_port", 1}, {"empty", 0}, {"failover_timeline", 6}, {"on_board", 2},
      {"one_port", 1},  {"teams", 6}, {"two_cards", 6}};
  const auto expected = ports.find(GetParam());
  ASSERT_NE(expected, ports.end()) << "say how many ports this host has";
  EXPECT_EQ(broker.provider().enumerateInstances("CIM_NetworkPort").items().size(), expected->second);
}

TEST_P(RealPlugin, EveryEndOfAnAssociationIsThereAndLeadsToTheOther) {
  for (const ClassDef* def : served()) {
    if (!def->association) continue;
    for (const std::string& link : pathsOf(broker.provider().enumerateInstances(def->name))) {
      const PathBody& path = parsed(link).body();
      ASSERT_EQ(path.keys.count, 2U);
      for (int end = 0; end < 2; ++end) {
        const ObjectPath& from = *as<ObjectPath>(path.keys.items[end].data.value.ref);
        const ObjectPath& to = *as<ObjectPath>(path.keys.items[1 - end].data.value.ref);
        const bool isSystem = from.body().className == "ZEB_ComputerSystem";
        EXPECT_TRUE(isSystem || broker.provider().getInstance(from).code == CMPI_RC_OK) << link;
        AssociationFilter filter;
        filter.associationClass = def->name;
        EXPECT_THAT(pathsOf(broker.provider().associatorNames(from, filter)),
                    testing::Contains(formatPath(to.body())))
            << link;
      }
    }
  }
}

INSTANTIATE_TEST_SUITE_P(Snapshots, RealPlugin, testing::ValuesIn(snapshots()),
                         [](const auto& tested) { return tested.param; });

}  // namespace
}  // namespace ZebManager
