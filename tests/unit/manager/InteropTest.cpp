// The namespace root/interop: what clients make, find and change there.
#include "InteropFixture.h"

namespace ZebManager {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

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
  EXPECT_EQ(changes, 1);
}

/// Everybody who is told of a change asks for all subscriptions.
TEST_F(Interop, ChangesOfWhatNobodySubscribesToAreToldNobody) {
  makeOneOfEach();
  changes = 0;
  ASSERT_EQ(codeOfCreate("CIM_IndicationFilter", filterProperties("g")), CMPI_RC_OK);
  ASSERT_EQ(space
                ->modifyInstance(*path(filterPath("g")),
                                 *instance("CIM_IndicationFilter", {{"ElementName", "other"}}), nullptr)
                .code,
            CMPI_RC_OK);
  ASSERT_EQ(space->deleteInstance(*path(filterPath("g"))).code, CMPI_RC_OK);
  EXPECT_EQ(changes, 0);
  const Instance* const moved =
      instance("CIM_ListenerDestinationCIMXML", {{"Destination", "http://127.0.0.1:8081/"}});
  ASSERT_EQ(space->modifyInstance(*path(handlerPath("h")), *moved, nullptr).code, CMPI_RC_OK);
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(space->subscriptions().at(0).destination, "http://127.0.0.1:8081/");
}

TEST_F(Interop, SubscriptionsSayWhatTheirFilterSelects) {
  makeOneOfEach();
  EXPECT_THAT(space->subscriptions().at(0).properties, IsEmpty()) << "all";
  ASSERT_EQ(codeOfCreate("CIM_IndicationFilter",
                         with(filterProperties("g"), "Query",
                              "SELECT Summary, ZEB_EthernetIndication.EventID FROM ZEB_EthernetIndication")),
            CMPI_RC_OK);
  ASSERT_EQ(subscribe("g", "h").code, CMPI_RC_OK);
  EXPECT_THAT(space->subscriptions(), testing::Contains(testing::Field(&Subscription::properties,
                                                                       ElementsAre("Summary", "EventID"))));
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
  EXPECT_EQ(changes, 2);
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
  const auto left = *end - BootClock::now();
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
  EXPECT_THAT(space->enumerateInstances("CIM_ManagedElement", nullptr).items(), SizeIs(11))
      << "three that were made here, two namespaces, and one each of the system, the object manager, its "
         "protocol, the service of indications, its capabilities, the profile";
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

TEST_F(Interop, TheServerIsDescribed) {
  const auto only = [&](const char* className) {
    const auto found = paths(space->enumerateInstanceNames(className));
    EXPECT_THAT(found, SizeIs(1)) << className;
    return found.empty() ? std::string() : found[0];
  };
  const std::string manager = only("CIM_ObjectManager");
  const std::string service = only("CIM_IndicationService");
  const auto associated = [&](const std::string& from, const char* association) {
    return paths(space->associatorNames(*path(from), {association, "", "", ""}));
  };
  EXPECT_THAT(associated(manager, "CIM_CommMechanismForManager"),
              ElementsAre(only("CIM_ObjectManagerCommunicationMechanism")));
  EXPECT_THAT(associated(manager, "CIM_NamespaceInManager"), SizeIs(2));
  EXPECT_THAT(associated(service, "CIM_ElementCapabilities"), ElementsAre(only("CIM_Capabilities")));
  EXPECT_THAT(associated(only("ZEB_ComputerSystem"), "CIM_HostedService"),
              UnorderedElementsAre(manager, service));
  EXPECT_THAT(associated(only("CIM_RegisteredProfile"), "CIM_ElementConformsToProfile"),
              ElementsAre(only("CIM_RegisteredProfile")));
  EXPECT_EQ(space->deleteInstance(*path(service)).code, CMPI_RC_ERR_NOT_SUPPORTED);
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

}  // namespace
}  // namespace ZebManager
