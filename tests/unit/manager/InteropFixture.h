// The namespace root/interop in a folder of its own, and what clients send to it.
#pragma once

#include <gmock/gmock.h>
#include <sqlite3.h>

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "indications/InteropNamespace.h"
#include "posix/TemporaryFolder.h"
#include "values/CallMemory.h"
#include "values/DateTimeText.h"
#include "values/ObjectPathText.h"
#include "values/Values.h"

namespace ZebManager {

using Properties = std::vector<std::pair<std::string, std::string>>;

inline constexpr char kSystem[] = "SystemCreationClassName=\"ZEB_ComputerSystem\",SystemName=\"server\"";

inline std::string filterPath(const std::string& name) {
  return "root/interop:CIM_IndicationFilter." + std::string(kSystem) +
         ",CreationClassName=\"CIM_IndicationFilter\",Name=\"" + name + "\"";
}

inline std::string handlerPath(const std::string& name,
                               const std::string& className = "CIM_ListenerDestinationCIMXML") {
  return "root/interop:" + className + "." + kSystem + ",CreationClassName=\"" + className + "\",Name=\"" +
         name + "\"";
}

/// As it stands behind a key.
inline std::string quoted(const std::string& text) {
  std::string out = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') out += '\\';
    out += c;
  }
  return out + "\"";
}

inline Properties filterProperties(const std::string& name) {
  return {{"Name", name}, {"Query", "SELECT * FROM ZEB_EthernetIndication"}, {"QueryLanguage", "WQL"}};
}

inline Properties handlerProperties(const std::string& name) {
  return {{"Name", name}, {"Destination", "http://127.0.0.1:8080/" + name}};
}

inline Properties with(Properties properties, const std::string& name, const std::string& value) {
  std::erase_if(properties, [&](const auto& entry) { return entry.first == name; });
  properties.emplace_back(name, value);
  return properties;
}

class Interop : public testing::Test {
 protected:
  Interop() {
    settings = {directory.path(), "server", "root/jxv", 6};
    start();
  }

  void start() {
    space.reset();
    space = std::make_unique<InteropNamespace>(
        own, sources, settings, [this](const std::string& line) { lines.push_back(line); },
        [this] { ++changes; });
  }

  /// As another program does it that has the file open.
  void elsewhere(const char* statements) const {
    sqlite3* database = nullptr;
    ASSERT_EQ(sqlite3_open((directory / "interop.db").c_str(), &database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database, statements, nullptr, nullptr, nullptr), SQLITE_OK) << statements;
    sqlite3_close(database);
  }

  /// A path as a client sends it; the text may leave keys out.
  const ObjectPath* path(const std::string& text) { return parsePath(arena, own, "root/interop", text); }

  Instance* instance(const std::string& className, const Properties& properties) {
    const ClassDef& classDef = *own.find(className);
    Instance* const made = makeInstance(arena, *makePath(arena, "root/interop", className), classDef);
    for (const auto& [name, text] : properties) {
      const CMPIType type = classDef.property(name)->type;
      const CMPIData data = type == CMPI_ref ? dataOf(parsePath(arena, own, "root/interop", text))
                                             : parseScalar(arena, type, text, name);
      made->ft->setProperty(made, name.c_str(), &data.value, data.type);
    }
    return made;
  }

  Reply create(const std::string& className, const Properties& properties) {
    return space->createInstance(*makePath(arena, "root/interop", className),
                                 *instance(className, properties));
  }
  CMPIrc codeOfCreate(const std::string& className, const Properties& properties) {
    return create(className, properties).code;
  }
  Reply subscribe(const std::string& filter, const std::string& handler, const Properties& more = {}) {
    Properties properties = {{"Filter", filterPath(filter)}, {"Handler", handlerPath(handler)}};
    properties.insert(properties.end(), more.begin(), more.end());
    return create("CIM_IndicationSubscription", properties);
  }
  void makeOneOfEach() {
    ASSERT_EQ(codeOfCreate("CIM_IndicationFilter", filterProperties("f")), CMPI_RC_OK);
    ASSERT_EQ(codeOfCreate("CIM_ListenerDestinationCIMXML", handlerProperties("h")), CMPI_RC_OK);
    ASSERT_EQ(subscribe("f", "h").code, CMPI_RC_OK);
  }
  const ObjectPath* subscriptionPath() {
    return path("root/interop:CIM_IndicationSubscription.Filter=" + quoted(filterPath("f")) +
                ",Handler=" + quoted(handlerPath("h")));
  }

  static std::vector<std::string> paths(const Reply& reply) {
    std::vector<std::string> texts;
    for (const CMPIData& item : reply.items()) {
      const PathBody& body = item.type == CMPI_ref ? as<ObjectPath>(item.value.ref)->body()
                                                   : *as<Instance>(item.value.inst)->body().path;
      texts.push_back(formatPath(body));
    }
    return texts;
  }
  static std::string value(const Reply& reply, const std::string& name) {
    if (reply.items().size() != 1 || reply.items()[0].type != CMPI_instance) return "no single instance";
    const auto* found = as<Instance>(reply.items()[0].value.inst)->body().properties.find(name);
    return found ? formatKeyValue(found->data) : "absent";
  }
  Reply get(const std::string& text, PropertyList properties = nullptr) {
    return space->getInstance(*path(text), properties);
  }

  const ClassRepository own = ClassRepository::fromFile(ZEB_INTEROP_SCHEMA);
  const ClassRepository sources = ClassRepository::fromFile(ZEB_SCHEMA_FILE);
  ZEB::TemporaryFolder directory;
  InteropSettings settings;
  Arena arena;
  ArenaScope call{arena};
  std::vector<std::string> lines;
  int changes = 0;
  std::unique_ptr<InteropNamespace> space;
};

}  // namespace ZebManager
