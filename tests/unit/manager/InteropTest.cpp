// The namespace root/interop: what clients make there, what they are refused, what survives a restart.
#include <gmock/gmock.h>

#include <fstream>

#include "TestDirectory.h"
#include "indications/InteropNamespace.h"
#include "indications/Sqlite.h"
#include "values/CallMemory.h"
#include "values/DateTimeText.h"
#include "values/ObjectPathText.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

using Properties = std::vector<std::pair<std::string, std::string>>;

constexpr char kSystem[] = "SystemCreationClassName=\"ZEB_ComputerSystem\",SystemName=\"server\"";

std::string filterPath(const std::string& name) {
  return "root/interop:CIM_IndicationFilter." + std::string(kSystem) +
         ",CreationClassName=\"CIM_IndicationFilter\",Name=\"" + name + "\"";
}

std::string handlerPath(const std::string& name,
                        const std::string& className = "CIM_ListenerDestinationCIMXML") {
  return "root/interop:" + className + "." + kSystem + ",CreationClassName=\"" + className + "\",Name=\"" +
         name + "\"";
}

/// As it stands behind a key.
std::string quoted(const std::string& text) {
  std::string out = "\"";
  for (const char c : text) {
    if (c == '"' || c == '\\') out += '\\';
    out += c;
  }
  return out + "\"";
}

Properties filterProperties(const std::string& name) {
  return {{"Name", name}, {"Query", "SELECT * FROM ZEB_EthernetIndication"}, {"QueryLanguage", "WQL"}};
}

Properties handlerProperties(const std::string& name) {
  return {{"Name", name}, {"Destination", "http://127.0.0.1:8080/" + name}};
}

Properties with(Properties properties, const std::string& name, const std::string& value) {
  std::erase_if(properties, [&](const auto& entry) { return entry.first == name; });
  properties.emplace_back(name, value);
  return properties;
}

class Interop : public testing::Test {
 protected:
  Interop() { start(); }

  void start() {
    space.reset();
    space = std::make_unique<InteropNamespace>(
        own, sources, InteropSettings{directory.path(), "server", "root/jxv", 6},
        [this](const std::string& line) { lines.push_back(line); }, [this] { ++changes; });
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
  TestDirectory directory;
  Arena arena;
  ArenaScope call{arena};
  std::vector<std::string> lines;
  int changes = 0;
  std::unique_ptr<InteropNamespace> space;
};

TEST_F(Interop, KeysAndDefaultsAreFilledIn) {
  const Reply made = create("CIM_IndicationFilter", filterProperties("f"));
  ASSERT_EQ(made.code, CMPI_RC_OK) << made.message;
  EXPECT_THAT(paths(made), ElementsAre(filterPath("f")));
  const Reply read = get(filterPath("f"));
  EXPECT_EQ(value(read, "Query"), "\"SELECT * FROM ZEB_EthernetIndication\"");
  EXPECT_EQ(value(read, "IndividualSubscriptionSupported"), "TRUE");
  EXPECT_EQ(value(read, "SystemName"), "\"server\"");
  ASSERT_EQ(codeOfCreate("CIM_ListenerDestinationCIMXML", handlerProperties("h")), CMPI_RC_OK);
  EXPECT_EQ(value(get(handlerPath("h")), "PersistenceType"), "2");
  EXPECT_EQ(value(get(handlerPath("h")), "Protocol"), "2");
  ASSERT_EQ(subscribe("f", "h").code, CMPI_RC_OK);
  const Reply subscription = space->getInstance(*subscriptionPath(), nullptr);
  EXPECT_EQ(value(subscription, "SubscriptionState"), "2");
  EXPECT_EQ(value(subscription, "OnFatalErrorPolicy"), "2");
  EXPECT_EQ(value(subscription, "SubscriptionTimeRemaining"), "absent");
  EXPECT_THAT(value(subscription, "SubscriptionStartTime"), HasSubstr("+000"));
}

TEST_F(Interop, KeysOfClientsStand) {
  const Reply made =
      create("CIM_IndicationFilter", with(with(filterProperties("f"), "SystemName", "elsewhere"),
                                          "SystemCreationClassName", "CIM_ComputerSystem"));
  EXPECT_THAT(paths(made),
              ElementsAre("root/interop:CIM_IndicationFilter.SystemCreationClassName=\"CIM_ComputerSystem\","
                          "SystemName=\"elsewhere\",CreationClassName=\"CIM_IndicationFilter\",Name=\"f\""));
}

TEST_F(Interop, HandlersOfTheOlderClassServeToo) {
  ASSERT_EQ(codeOfCreate("CIM_IndicationFilter", filterProperties("f")), CMPI_RC_OK);
  ASSERT_EQ(codeOfCreate("CIM_IndicationHandlerCIMXML", handlerProperties("h")), CMPI_RC_OK);
  ASSERT_EQ(codeOfCreate(
                "CIM_IndicationSubscription",
                {{"Filter", filterPath("f")}, {"Handler", handlerPath("h", "CIM_IndicationHandlerCIMXML")}}),
            CMPI_RC_OK);
  ASSERT_THAT(space->subscriptions(), SizeIs(1));
  EXPECT_EQ(space->subscriptions()[0].destination, "http://127.0.0.1:8080/h");
}

TEST_F(Interop, SubscriptionsSayWhatIsWanted) {
  makeOneOfEach();
  ASSERT_THAT(space->wantedFilters(), SizeIs(1));
  const IndicationFilter filter = space->wantedFilters()[0];
  EXPECT_EQ(filter.query, "SELECT * FROM ZEB_EthernetIndication");
  EXPECT_EQ(filter.queryLanguage, "WQL");
  ASSERT_THAT(space->subscriptions(), SizeIs(1));
  EXPECT_EQ(space->subscriptions()[0].filterName, filter.name);
  EXPECT_EQ(space->subscriptions()[0].destination, "http://127.0.0.1:8080/h");
  EXPECT_FALSE(space->subscriptions()[0].end);
  EXPECT_EQ(changes, 3);
}

TEST_F(Interop, FiltersWithoutASubscriptionAreNotWanted) {
  ASSERT_EQ(codeOfCreate("CIM_IndicationFilter", filterProperties("f")), CMPI_RC_OK);
  EXPECT_THAT(space->wantedFilters(), IsEmpty());
}

TEST_F(Interop, DisabledSubscriptionsWantNothing) {
  makeOneOfEach();
  const Instance* const disabled = instance("CIM_IndicationSubscription", {{"SubscriptionState", "4"}});
  ASSERT_EQ(space->modifyInstance(*subscriptionPath(), *disabled, nullptr).code, CMPI_RC_OK);
  EXPECT_THAT(space->wantedFilters(), IsEmpty());
  EXPECT_THAT(space->subscriptions(), IsEmpty());
  EXPECT_EQ(changes, 4);
  const Instance* const enabled = instance("CIM_IndicationSubscription", {{"SubscriptionState", "2"}});
  ASSERT_EQ(space->modifyInstance(*subscriptionPath(), *enabled, nullptr).code, CMPI_RC_OK);
  EXPECT_THAT(space->subscriptions(), SizeIs(1));
}

TEST_F(Interop, SubscriptionsEndWithTheirDuration) {
  ASSERT_EQ(codeOfCreate("CIM_IndicationFilter", filterProperties("f")), CMPI_RC_OK);
  ASSERT_EQ(codeOfCreate("CIM_ListenerDestinationCIMXML", handlerProperties("h")), CMPI_RC_OK);
  ASSERT_EQ(subscribe("f", "h", {{"SubscriptionDuration", "3600"}}).code, CMPI_RC_OK);
  const auto end = space->subscriptions().at(0).end;
  ASSERT_TRUE(end);
  const auto left = *end - std::chrono::system_clock::now();
  EXPECT_GT(left, std::chrono::seconds(3500));
  EXPECT_LE(left, std::chrono::seconds(3600));
  const int remaining =
      std::stoi(value(space->getInstance(*subscriptionPath(), nullptr), "SubscriptionTimeRemaining"));
  EXPECT_GT(remaining, 3500);
  EXPECT_LE(remaining, 3600);
}

TEST_F(Interop, EnumerationsReachSubclasses) {
  makeOneOfEach();
  ASSERT_EQ(codeOfCreate("CIM_IndicationHandlerCIMXML", handlerProperties("old")), CMPI_RC_OK);
  EXPECT_THAT(paths(space->enumerateInstanceNames("CIM_ListenerDestination")),
              UnorderedElementsAre(handlerPath("h"), handlerPath("old", "CIM_IndicationHandlerCIMXML")));
  EXPECT_THAT(paths(space->enumerateInstances("cim_indicationfilter", nullptr)),
              ElementsAre(filterPath("f")));
  EXPECT_THAT(space->enumerateInstanceNames("CIM_AbstractIndicationSubscription").items(), SizeIs(1));
  EXPECT_THAT(space->enumerateInstances("CIM_ManagedElement", nullptr).items(), SizeIs(6))
      << "three that were made here, two namespaces, the object manager";
  EXPECT_EQ(space->enumerateInstances("CIM_Nothing", nullptr).code, CMPI_RC_ERR_INVALID_CLASS);
  EXPECT_EQ(space->enumerateInstanceNames("CIM_Nothing").code, CMPI_RC_ERR_INVALID_CLASS);
}

TEST_F(Interop, NamespacesAreDescribed) {
  const auto spaces = paths(space->enumerateInstanceNames("CIM_Namespace"));
  const std::string keys =
      std::string(kSystem) +
      ",ObjectManagerCreationClassName=\"CIM_ObjectManager\",ObjectManagerName=\"zebcim\","
      "CreationClassName=\"CIM_Namespace\",Name=";
  EXPECT_THAT(spaces, UnorderedElementsAre("root/interop:CIM_Namespace." + keys + "\"root/interop\"",
                                           "root/interop:CIM_Namespace." + keys + "\"root/jxv\""));
  EXPECT_EQ(space->deleteInstance(*path(spaces[0])).code, CMPI_RC_ERR_NOT_SUPPORTED);
  EXPECT_EQ(
      space->modifyInstance(*path(spaces[0]), *instance("CIM_Namespace", {{"ElementName", "x"}}), nullptr)
          .code,
      CMPI_RC_ERR_NOT_SUPPORTED);
  EXPECT_THAT(space->enumerateInstanceNames("CIM_ObjectManager").items(), SizeIs(1));
}

TEST_F(Interop, PropertyListsNarrow) {
  makeOneOfEach();
  const char* const list[] = {"query", "Nothing", nullptr};
  const Reply read = get(filterPath("f"), list);
  EXPECT_EQ(value(read, "Query"), "\"SELECT * FROM ZEB_EthernetIndication\"");
  EXPECT_EQ(value(read, "QueryLanguage"), "absent");
  EXPECT_EQ(value(read, "Name"), "\"f\"") << "keys stay";
}

TEST_F(Interop, PathsMayLeaveOutWhatIsFilledIn) {
  makeOneOfEach();
  ObjectPath* const brief = makePath(arena, "", "cim_indicationfilter");
  brief->ft->addKey(brief, "name", reinterpret_cast<const CMPIValue*>("f"), CMPI_chars);
  EXPECT_EQ(space->getInstance(*brief, nullptr).code, CMPI_RC_OK);
  ObjectPath* const nameless = makePath(arena, "root/interop", "CIM_IndicationFilter");
  EXPECT_EQ(space->getInstance(*nameless, nullptr).code, CMPI_RC_ERR_INVALID_PARAMETER);
  nameless->ft->addKey(nameless, "Query", reinterpret_cast<const CMPIValue*>("f"), CMPI_chars);
  EXPECT_EQ(space->getInstance(*nameless, nullptr).code, CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_EQ(space->getInstance(*makePath(arena, "root/interop", "CIM_Nothing"), nullptr).code,
            CMPI_RC_ERR_INVALID_CLASS);
  EXPECT_EQ(get(filterPath("g")).code, CMPI_RC_ERR_NOT_FOUND);
}

TEST_F(Interop, PathsMayNameHostAndNamespace) {
  makeOneOfEach();
  const auto code = [this](const char* host, const char* nameSpace) {
    ObjectPath* const named = makePath(arena, nameSpace, "CIM_IndicationFilter");
    named->ft->addKey(named, "Name", reinterpret_cast<const CMPIValue*>("f"), CMPI_chars);
    named->ft->setHostname(named, host);
    return space->getInstance(*named, nullptr).code;
  };
  EXPECT_EQ(code("somewhere", "Root/Interop"), CMPI_RC_OK);
  EXPECT_EQ(code("", "/root/interop/"), CMPI_RC_OK);
  EXPECT_EQ(code("root", "interop"), CMPI_RC_OK) << "as a client may write references";
  EXPECT_EQ(code("", "somewhere/root/interop"), CMPI_RC_OK) << "likewise";
  EXPECT_EQ(code("", "root/jxv"), CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_EQ(code("", "root"), CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(Interop, AssociationsLeadBothWays) {
  makeOneOfEach();
  const ObjectPath& filter = *path(filterPath("f"));
  const ObjectPath& handler = *path(handlerPath("h"));
  EXPECT_THAT(paths(space->associatorNames(filter, {})), ElementsAre(handlerPath("h")));
  EXPECT_THAT(paths(space->associators(handler, {}, nullptr)), ElementsAre(filterPath("f")));
  EXPECT_THAT(space->referenceNames(filter, {}).items(), SizeIs(1));
  EXPECT_THAT(space->references(handler, {}, nullptr).items(), SizeIs(1));
  const auto names = [&](const AssociationFilter& narrowed) {
    return paths(space->associatorNames(filter, narrowed));
  };
  EXPECT_THAT(names({"CIM_IndicationSubscription", "CIM_ListenerDestination", "filter", "HANDLER"}),
              SizeIs(1));
  EXPECT_THAT(names({"CIM_AbstractIndicationSubscription", "", "", ""}), SizeIs(1));
  EXPECT_THAT(names({"CIM_Dependency", "", "", ""}), IsEmpty());
  EXPECT_THAT(names({"", "CIM_IndicationFilter", "", ""}), IsEmpty());
  EXPECT_THAT(names({"", "", "Handler", ""}), IsEmpty());
  EXPECT_THAT(names({"", "", "", "Filter"}), IsEmpty());
  EXPECT_EQ(space->associators(filter, {"CIM_Nothing", "", "", ""}, nullptr).code,
            CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_THAT(space->referenceNames(filter, {"", "CIM_IndicationSubscription", "Filter", ""}).items(),
              SizeIs(1));
  EXPECT_THAT(space->referenceNames(filter, {"", "", "Handler", ""}).items(), IsEmpty());
  EXPECT_EQ(space->associatorNames(*path(filterPath("g")), {}).code, CMPI_RC_ERR_NOT_FOUND);
}

TEST_F(Interop, ModificationsHonourTheirList) {
  makeOneOfEach();
  const Instance* const wanted =
      instance("CIM_IndicationFilter", {{"Name", "f"},
                                        {"Query", "SELECT * FROM CIM_AlertIndication"},
                                        {"QueryLanguage", "CQL"},
                                        {"ElementName", "new"}});
  const char* const list[] = {"Query", "Description", nullptr};
  ASSERT_EQ(space->modifyInstance(*path(filterPath("f")), *wanted, list).code, CMPI_RC_OK);
  EXPECT_EQ(value(get(filterPath("f")), "Query"), "\"SELECT * FROM CIM_AlertIndication\"");
  EXPECT_EQ(value(get(filterPath("f")), "QueryLanguage"), "\"WQL\"");
  EXPECT_EQ(value(get(filterPath("f")), "ElementName"), "absent");
  ASSERT_EQ(space->modifyInstance(*path(filterPath("f")), *wanted, nullptr).code, CMPI_RC_OK);
  EXPECT_EQ(value(get(filterPath("f")), "QueryLanguage"), "\"CQL\"");
  EXPECT_EQ(value(get(filterPath("f")), "ElementName"), "\"new\"");
  EXPECT_EQ(space->wantedFilters().at(0).query, "SELECT * FROM CIM_AlertIndication");
}

TEST_F(Interop, ModificationsAreRefused) {
  makeOneOfEach();
  const auto code = [&](const Properties& properties, PropertyList list = nullptr) {
    return space->modifyInstance(*path(filterPath("f")), *instance("CIM_IndicationFilter", properties), list)
        .code;
  };
  const char* const unknown[] = {"Nothing", nullptr};
  const char* const query[] = {"Query", nullptr};
  EXPECT_EQ(code({{"Name", "g"}}), CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_EQ(code({}, unknown), CMPI_RC_ERR_NO_SUCH_PROPERTY);
  EXPECT_EQ(code({}, query), CMPI_RC_ERR_INVALID_PARAMETER) << "a query has to be there";
  EXPECT_EQ(code({{"Query", "SELECT"}}), CMPI_RC_ERR_INVALID_QUERY);
  EXPECT_EQ(value(get(filterPath("f")), "Query"), "\"SELECT * FROM ZEB_EthernetIndication\"");
  EXPECT_EQ(
      space->modifyInstance(*path(filterPath("g")), *instance("CIM_IndicationFilter", {}), nullptr).code,
      CMPI_RC_ERR_NOT_FOUND);
}

TEST_F(Interop, WhatIsInUseStays) {
  makeOneOfEach();
  EXPECT_EQ(space->deleteInstance(*path(filterPath("f"))).code, CMPI_RC_ERR_FAILED);
  EXPECT_EQ(space->deleteInstance(*path(handlerPath("h"))).code, CMPI_RC_ERR_FAILED);
  EXPECT_EQ(changes, 3);
  EXPECT_EQ(space->deleteInstance(*subscriptionPath()).code, CMPI_RC_OK);
  EXPECT_THAT(space->subscriptions(), IsEmpty());
  EXPECT_EQ(space->deleteInstance(*path(filterPath("f"))).code, CMPI_RC_OK);
  EXPECT_EQ(space->deleteInstance(*path(handlerPath("h"))).code, CMPI_RC_OK);
  EXPECT_EQ(space->deleteInstance(*path(filterPath("f"))).code, CMPI_RC_ERR_NOT_FOUND);
  EXPECT_EQ(changes, 6);
}

TEST_F(Interop, BadFiltersAreRefused) {
  const Properties good = filterProperties("f");
  const auto code = [&](const std::string& name, const std::string& text) {
    return codeOfCreate("CIM_IndicationFilter", with(good, name, text));
  };
  EXPECT_EQ(code("Query", "SELECT * FROM"), CMPI_RC_ERR_INVALID_QUERY);
  EXPECT_EQ(code("Query", "SELECT * FROM No_Such"), CMPI_RC_ERR_INVALID_QUERY);
  EXPECT_EQ(code("Query", "SELECT * FROM ZEB_EthernetPort"), CMPI_RC_ERR_INVALID_QUERY);
  EXPECT_EQ(code("Query", "SELECT * FROM ZEB_EthernetIndication WHERE Nothing = 1"),
            CMPI_RC_ERR_INVALID_QUERY);
  EXPECT_EQ(code("QueryLanguage", "SQL"), CMPI_RC_ERR_QUERY_LANGUAGE_NOT_SUPPORTED);
  EXPECT_EQ(code("SourceNamespace", "root/other"), CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_EQ(code("CreationClassName", "CIM_Other"), CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_EQ(code("ElementName", std::string(70000, 'x')), CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_EQ(codeOfCreate("CIM_IndicationFilter", {{"Name", "f"}, {"QueryLanguage", "WQL"}}),
            CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_EQ(codeOfCreate("CIM_IndicationFilter", {{"Name", "f"}, {"Query", "SELECT * FROM CIM_Indication"}}),
            CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_EQ(codeOfCreate("CIM_IndicationFilter", {good[1], good[2]}), CMPI_RC_ERR_INVALID_PARAMETER)
      << "no name";
  EXPECT_THAT(space->enumerateInstanceNames("CIM_IndicationFilter").items(), IsEmpty());
  EXPECT_EQ(code("SourceNamespace", "/root/jxv/"), CMPI_RC_OK);
  EXPECT_EQ(changes, 1);
}

TEST_F(Interop, BadListenersAreRefused) {
  const auto code = [&](const std::string& name, const std::string& text) {
    return codeOfCreate("CIM_ListenerDestinationCIMXML", with(handlerProperties("h"), name, text));
  };
  EXPECT_EQ(code("Destination", "somewhere"), CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_EQ(code("Destination", "ftp://host/"), CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_EQ(code("Protocol", "4"), CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_EQ(code("PersistenceType", "9"), CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_EQ(codeOfCreate("CIM_ListenerDestinationCIMXML", {{"Name", "h"}}), CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_EQ(code("PersistenceType", "3"), CMPI_RC_OK);
}

TEST_F(Interop, BadSubscriptionsAreRefused) {
  EXPECT_EQ(subscribe("f", "h").code, CMPI_RC_ERR_INVALID_PARAMETER);
  makeOneOfEach();
  EXPECT_EQ(subscribe("f", "h").code, CMPI_RC_ERR_ALREADY_EXISTS);
  EXPECT_EQ(subscribe("g", "h").code, CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_EQ(codeOfCreate("CIM_IndicationSubscription", {{"Filter", filterPath("f")}}),
            CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_EQ(codeOfCreate("CIM_IndicationSubscription",
                         {{"Filter", handlerPath("h")}, {"Handler", handlerPath("h")}}),
            CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_EQ(subscribe("f", "h", {{"SubscriptionState", "9"}}).code, CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(Interop, TheSameInstanceIsMadeOnce) {
  makeOneOfEach();
  EXPECT_EQ(codeOfCreate("CIM_IndicationFilter", filterProperties("f")), CMPI_RC_ERR_ALREADY_EXISTS);
  EXPECT_EQ(codeOfCreate("CIM_ListenerDestinationCIMXML", handlerProperties("h")),
            CMPI_RC_ERR_ALREADY_EXISTS);
  EXPECT_EQ(codeOfCreate("CIM_IndicationFilter", filterProperties("F")), CMPI_RC_OK) << "values know case";
}

TEST_F(Interop, OtherClassesCannotBeMade) {
  EXPECT_EQ(codeOfCreate("CIM_ObjectManager", {{"Name", "x"}}), CMPI_RC_ERR_NOT_SUPPORTED);
  EXPECT_EQ(codeOfCreate("CIM_ListenerDestination", handlerProperties("h")), CMPI_RC_ERR_NOT_SUPPORTED);
  CMPIArgs* const none = makeArgs(arena);
  EXPECT_EQ(
      space->invokeMethod(*makePath(arena, "root/interop", "CIM_IndicationFilter"), "Go", *none, *none).code,
      CMPI_RC_ERR_METHOD_NOT_FOUND);
}

TEST_F(Interop, ThereIsAnEnd) {
  for (int i = 0; i < 6; ++i) {
    ASSERT_EQ(codeOfCreate("CIM_IndicationFilter", filterProperties("f" + std::to_string(i))), CMPI_RC_OK);
  }
  EXPECT_EQ(codeOfCreate("CIM_IndicationFilter", filterProperties("more")), CMPI_RC_ERR_FAILED);
  EXPECT_EQ(space->deleteInstance(*path(filterPath("f0"))).code, CMPI_RC_OK);
  EXPECT_EQ(codeOfCreate("CIM_IndicationFilter", filterProperties("more")), CMPI_RC_OK);
}

TEST_F(Interop, EverythingSurvivesARestart) {
  makeOneOfEach();
  Instance* const filter =
      instance("CIM_IndicationFilter", with(filterProperties("arrays"), "ElementName", "it's \"so\""));
  Array* const spaces = makeArray(arena, 2, CMPI_string);
  spaces->body().elements[0] = dataOf(makeString(arena, "root/jxv"));
  spaces->body().elements[1] = dataOf(makeString(arena, ""));
  const CMPIData data = dataOf(spaces);
  filter->ft->setProperty(filter, "SourceNamespaces", &data.value, data.type);
  const CMPIData none = dataOf(makeArray(arena, 0, CMPI_string));
  filter->ft->setProperty(filter, "TemplateVariable", &none.value, none.type);
  ASSERT_EQ(space->createInstance(*makePath(arena, "", "CIM_IndicationFilter"), *filter).code, CMPI_RC_OK);
  const auto before = space->subscriptions();
  const auto started = value(space->getInstance(*subscriptionPath(), nullptr), "SubscriptionStartTime");
  start();
  EXPECT_EQ(space->subscriptions(), before);
  EXPECT_EQ(value(space->getInstance(*subscriptionPath(), nullptr), "SubscriptionStartTime"), started);
  const Reply read = get(filterPath("arrays"));
  EXPECT_EQ(value(read, "ElementName"), R"("it's \"so\"")");
  EXPECT_EQ(value(read, "IndividualSubscriptionSupported"), "TRUE");
  const InstanceBody& body = as<Instance>(read.items()[0].value.inst)->body();
  const ArrayBody& kept = as<Array>(body.properties.find("SourceNamespaces")->data.value.array)->body();
  ASSERT_EQ(kept.count, 2U);
  EXPECT_EQ(textOf(kept.elements[0].value.string), "root/jxv");
  EXPECT_EQ(textOf(kept.elements[1].value.string), "");
  EXPECT_EQ(as<Array>(body.properties.find("TemplateVariable")->data.value.array)->body().count, 0U);
  ASSERT_EQ(space->deleteInstance(*subscriptionPath()).code, CMPI_RC_OK);
  start();
  EXPECT_THAT(space->subscriptions(), IsEmpty());
  EXPECT_EQ(get(handlerPath("h")).code, CMPI_RC_OK);
  EXPECT_THAT(lines, IsEmpty());
}

TEST_F(Interop, ADamagedFileIsPutAside) {
  makeOneOfEach();
  space.reset();
  std::ofstream(directory.path() + "/interop.db") << "this is no database, and it is long enough to tell";
  start();
  EXPECT_THAT(lines, ElementsAre(HasSubstr("is damaged")));
  EXPECT_TRUE(std::filesystem::exists(directory.path() + "/interop.db.damaged-1"));
  EXPECT_THAT(space->subscriptions(), IsEmpty());
  makeOneOfEach();
  start();
  EXPECT_THAT(space->subscriptions(), SizeIs(1));
}

TEST_F(Interop, WhatNoLongerFitsIsLeftOut) {
  makeOneOfEach();
  space.reset();
  {
    SqliteFile file(directory.path(), "interop.db", std::array{""}, [](const std::string&) {});
    file.execute("UPDATE value SET property = 'Gone' WHERE property = 'Query'");
  }
  start();
  EXPECT_THAT(lines, ElementsAre(HasSubstr("no property 'Gone' any more")));
  EXPECT_THAT(space->subscriptions(), IsEmpty()) << "its filter is not there";
  EXPECT_EQ(get(handlerPath("h")).code, CMPI_RC_OK);
}

TEST_F(Interop, AFileOfALaterVersionIsNotTouched) {
  space.reset();
  {
    SqliteFile file(directory.path(), "interop.db", std::array{""}, [](const std::string&) {});
    file.execute("PRAGMA user_version = 99");
  }
  EXPECT_THROW(start(), ManagerError);
  EXPECT_FALSE(std::filesystem::exists(directory.path() + "/interop.db.damaged-1"));
}

TEST_F(Interop, AFileThatCannotBeWrittenRefusesAndChangesNothing) {
  makeOneOfEach();
  SqliteFile other(directory.path(), "interop.db", std::array{""}, [](const std::string&) {});
  other.execute("DROP TABLE value");
  EXPECT_EQ(codeOfCreate("CIM_IndicationFilter", filterProperties("g")), CMPI_RC_ERR_FAILED);
  EXPECT_EQ(get(filterPath("g")).code, CMPI_RC_ERR_NOT_FOUND);
  EXPECT_EQ(space->deleteInstance(*subscriptionPath()).code, CMPI_RC_ERR_FAILED);
  EXPECT_THAT(space->subscriptions(), SizeIs(1));
}

TEST_F(Interop, ManyThreadsMayAsk) {
  makeOneOfEach();
  std::vector<std::thread> threads;
  for (int t = 0; t < 3; ++t) {
    threads.emplace_back([&] {
      for (int i = 0; i < 50; ++i) {
        EXPECT_THAT(space->enumerateInstances("CIM_IndicationFilter", nullptr).items(),
                    SizeIs(testing::Ge(1U)));
        EXPECT_THAT(space->subscriptions(), SizeIs(1));
      }
    });
  }
  for (int i = 0; i < 20; ++i) {
    ASSERT_EQ(codeOfCreate("CIM_IndicationFilter", filterProperties("g")), CMPI_RC_OK);
    ASSERT_EQ(space->deleteInstance(*path(filterPath("g"))).code, CMPI_RC_OK);
  }
  for (std::thread& thread : threads) thread.join();
}

}  // namespace
}  // namespace ZebManager
