// The namespace root/interop: what clients are refused there.
#include "InteropFixture.h"

namespace ZebManager {
namespace {

using testing::IsEmpty;

TEST_F(Interop, WhatIsInUseStays) {
  makeOneOfEach();
  EXPECT_EQ(space->deleteInstance(*path(filterPath("f"))).code, CMPI_RC_ERR_FAILED);
  EXPECT_EQ(space->deleteInstance(*path(handlerPath("h"))).code, CMPI_RC_ERR_FAILED);
  EXPECT_EQ(changes, 1);
  EXPECT_EQ(space->deleteInstance(*subscriptionPath()).code, CMPI_RC_OK);
  EXPECT_THAT(space->subscriptions(), IsEmpty());
  EXPECT_EQ(space->deleteInstance(*path(filterPath("f"))).code, CMPI_RC_OK);
  EXPECT_EQ(space->deleteInstance(*path(handlerPath("h"))).code, CMPI_RC_OK);
  EXPECT_EQ(space->deleteInstance(*path(filterPath("f"))).code, CMPI_RC_ERR_NOT_FOUND);
  EXPECT_EQ(changes, 2);
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
  EXPECT_EQ(changes, 0);
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

}  // namespace
}  // namespace ZebManager
