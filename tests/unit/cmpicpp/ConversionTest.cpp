#include <gmock/gmock.h>

#include "BrokerValues.h"
#include "cmpicpp/CmpiContext.h"
#include "cmpicpp/CmpiStatus.h"
#include "support/FakeBroker.h"

// Between plain values and the object manager's own.

namespace CmpiCpp {
namespace {

using ZEB::test::FakeBroker;
using ZEB::test::FakeInstance;
using ZEB::test::FakeObjectPath;
using ZEB::test::FakeString;

class ConversionTest : public testing::Test {
 protected:
  /// A value as an object manager passes it.
  static CMPIData data(CMPIType type, CMPIValueState state = CMPI_goodValue) { return {type, state, {}}; }

  FakeBroker broker;
  FakeBroker::Call call{broker};
};

CmpiArray arrayOf(CMPIType type, std::initializer_list<CmpiData> values) {
  CmpiArray array(values.size(), type);
  std::size_t index = 0;
  for (const CmpiData& value : values) array.setElementAt(index++, value);
  return array;
}

TEST_F(ConversionTest, everyKindOfPropertyGoesThereAndBack) {
  CmpiInstance instance(CmpiObjectPath("root/jxv", "C", "h", {{"K", "k"}}));
  const std::vector<CmpiData> values = {
      true,
      std::uint8_t{255},
      std::uint16_t{65535},
      std::uint32_t{4294967295u},
      std::uint64_t{18446744073709551615u},
      std::int8_t{-128},
      std::int16_t{-32768},
      std::int32_t{-2147483647 - 1},
      std::int64_t{-9223372036854775807 - 1},
      2.5,
      "text \xC3\xA4",
      "",
      CmpiDateTime(1767323045000006, false),
      CmpiDateTime(5, true),
      CmpiObjectPath("n", "R", "h", {{"A", std::uint32_t{1}}, {"B", "b"}}),
      arrayOf(CMPI_string, {"a", "", "c"}),
      arrayOf(CMPI_uint16, {std::uint16_t{1}, CmpiData::null(CMPI_uint16)}),
      arrayOf(CMPI_string, {}),
      arrayOf(CMPI_dateTime, {CmpiDateTime(7, true)}),
      arrayOf(CMPI_ref, {CmpiObjectPath("n", "R")}),
      CmpiData::null(CMPI_string),
      CmpiData::null(CMPI_uint16 | CMPI_ARRAY),
  };
  for (std::size_t i = 0; i < values.size(); ++i) instance.addProperty("P" + std::to_string(i), values[i]);

  const CMPIInstance* there = toBroker(broker.get(), instance);
  const CmpiInstance back = fromBroker(there);
  EXPECT_EQ(back.path(), instance.path());
  EXPECT_EQ(back.path().host(), "h");
  ASSERT_EQ(back.properties().size(), values.size());
  for (std::size_t i = 0; i < values.size(); ++i) {
    EXPECT_EQ(back.properties()[i].name.str(), "P" + std::to_string(i));
    EXPECT_EQ(back.properties()[i].value, values[i]) << i;
  }
}

TEST_F(ConversionTest, textGoesOverAsStringObjects) {
  const CMPIValue value = toBroker(broker.get(), CmpiData("x"));
  EXPECT_EQ(static_cast<const FakeString*>(value.string)->text, "x");
}

TEST_F(ConversionTest, bothTextCodesAreText) {
  CMPIData chars = data(CMPI_chars);
  char text[] = "plain";
  chars.value.chars = text;
  EXPECT_EQ(fromBroker(chars), CmpiData("plain"));
  chars.value.chars = nullptr;
  EXPECT_EQ(fromBroker(chars), CmpiData::null(CMPI_string));
}

TEST_F(ConversionTest, narrowRealsBecomeWide) {
  CMPIData real = data(CMPI_real32);
  real.value.real32 = 0.5F;
  EXPECT_EQ(fromBroker(real), CmpiData(0.5));
}

TEST_F(ConversionTest, whatHasNoValueIsNullOfItsType) {
  for (const CMPIValueState state : {CMPI_nullValue, CMPI_notFound, CMPI_badValue}) {
    EXPECT_EQ(fromBroker(data(CMPI_uint32, state)), CmpiData::null(CMPI_uint32));
  }
  for (const CMPIType type : {CMPI_string, CMPI_dateTime, CMPI_ref}) {
    EXPECT_EQ(fromBroker(data(type)), CmpiData::null(type)) << "a null pointer";
  }
  EXPECT_EQ(fromBroker(data(CMPI_uint16 | CMPI_ARRAY)), CmpiData::null(CMPI_uint16 | CMPI_ARRAY));
  EXPECT_TRUE(fromBroker(data(CMPI_instance)).isNull()) << "a type that has no plain form";
}

TEST_F(ConversionTest, aKeyStateIsAGoodValue) {
  CMPIData key = data(CMPI_uint32, CMPI_keyValue);
  key.value.uint32 = 9;
  EXPECT_EQ(fromBroker(key), CmpiData(std::uint32_t{9}));
}

TEST_F(ConversionTest, nullObjectsAreEmptyValues) {
  EXPECT_TRUE(fromBroker(static_cast<const CMPIObjectPath*>(nullptr)).empty());
  EXPECT_TRUE(fromBroker(static_cast<const CMPIInstance*>(nullptr)).properties().empty());
  EXPECT_TRUE(fromBroker(static_cast<const CMPIArgs*>(nullptr)).arguments().empty());
  EXPECT_EQ(fromBroker(static_cast<const CMPIString*>(nullptr)), "");
}

TEST_F(ConversionTest, aStringWithoutCharactersIsEmpty) {
  auto* text = broker.make<FakeString>("unseen");
  text->nullText = true;
  EXPECT_EQ(fromBroker(text), "");
}

TEST_F(ConversionTest, keysThatAreCountedAndNotDeliveredAreLeftOut) {
  auto* path = call.path({"n", "C", "", {{"A", "a"}, {"B", "b"}}});
  CMPIObjectPathFT table = *path->ft;
  table.getKeyCount = [](const CMPIObjectPath*, CMPIStatus*) -> CMPICount { return 5; };
  path->ft = &table;
  EXPECT_EQ(fromBroker(path).str(), "n:C.A=\"a\",B=\"b\"");
}

TEST_F(ConversionTest, aKeyThatIsNamedAndNotDeliveredIsLeftOut) {
  auto* path = call.path({"n", "C", "", {{"A", "a"}, {"B", "b"}}});
  static const auto deliver = path->ft->getKeyAt;
  CMPIObjectPathFT table = *path->ft;
  table.getKeyAt = [](const CMPIObjectPath* of, CMPICount index, CMPIString** name, CMPIStatus* status) {
    const CMPIData value = deliver(of, index, name, status);
    if (index == 0) status->rc = CMPI_RC_ERR_FAILED;
    return value;
  };
  path->ft = &table;
  EXPECT_EQ(fromBroker(path).str(), "n:C.B=\"b\"");
}

TEST_F(ConversionTest, argumentsAreRead) {
  CmpiArgs args;
  args.setArg("One", std::uint32_t{1});
  args.setArg("Two", "2");
  const CmpiArgs back = fromBroker(call.args(args));
  ASSERT_EQ(back.arguments().size(), 2u);
  EXPECT_EQ(*back.findArg("One"), CmpiData(std::uint32_t{1}));
  EXPECT_EQ(*back.findArg("Two"), CmpiData("2"));
}

TEST_F(ConversionTest, whatTheObjectManagerCannotMakeIsAStatusWithItsCode) {
  broker.eft.newObjectPath = [](const CMPIBroker*, const char*, const char*,
                                CMPIStatus* status) -> CMPIObjectPath* {
    *status = {CMPI_RC_ERR_INVALID_CLASS, nullptr};
    return nullptr;
  };
  try {
    toBroker(broker.get(), CmpiObjectPath("n", "NoSuchClass"));
    ADD_FAILURE();
  } catch (const CmpiStatus& status) {
    EXPECT_EQ(status.rc(), CMPI_RC_ERR_INVALID_CLASS);
    EXPECT_THAT(status.msg(), testing::HasSubstr("NoSuchClass"));
  }
}

TEST_F(ConversionTest, anObjectManagerThatMakesNothingAndSaysOkIsAFailure) {
  broker.eft.newInstance = [](const CMPIBroker*, const CMPIObjectPath*, CMPIStatus*) -> CMPIInstance* {
    return nullptr;
  };
  try {
    toBroker(broker.get(), CmpiInstance(CmpiObjectPath("n", "C")));
    ADD_FAILURE();
  } catch (const CmpiStatus& status) {
    EXPECT_EQ(status.rc(), CMPI_RC_ERR_FAILED);
  }
}

TEST_F(ConversionTest, aContextsTextsAreRead) {
  call.context().entries["Who"] = "root";
  call.context().entries["Flags"] = std::uint32_t{1};
  call.context().nullTexts.emplace_back("Principal");
  const CmpiContext context(&call.context());
  EXPECT_EQ(context.getText("Who"), "root");
  EXPECT_EQ(context.getText("Flags"), std::nullopt);
  EXPECT_EQ(context.getText("Principal"), std::nullopt);
  EXPECT_EQ(context.getText("Nothing"), std::nullopt);
  EXPECT_EQ(CmpiContext().getText("Who"), std::nullopt);
}

}  // namespace
}  // namespace CmpiCpp
