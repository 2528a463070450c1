#include <gmock/gmock.h>

#include "cmpicpp/CmpiArgs.h"
#include "cmpicpp/CmpiInstance.h"
#include "cmpicpp/CmpiStatus.h"

// Names, values, arrays, instances, arguments and statuses: what they are without any object manager.

namespace CmpiCpp {
namespace {

CMPIrc codeOf(const std::function<void()>& call) {
  try {
    call();
    return CMPI_RC_OK;
  } catch (const CmpiStatus& status) {
    return status.rc();
  }
}

TEST(NameTest, isEqualWithoutRegardToCaseAndKeepsItsOwn) {
  const CmpiName written("ZEB_EthernetPort");
  EXPECT_EQ(written, CmpiName("zeb_ETHERNETport"));
  EXPECT_EQ(written.str(), "ZEB_EthernetPort");
  EXPECT_FALSE(written == CmpiName("ZEB_EthernetPorts"));
  EXPECT_FALSE(written == CmpiName("ZEB_EthernetPor"));
  EXPECT_EQ(CmpiName::hash("ZEB_EthernetPort"), CmpiName::hash("zeb_ethernetPORT"));
}

TEST(NameTest, onlyAsciiLettersHaveTwoCases) {
  EXPECT_FALSE(CmpiName::equal("\xC3\x84", "\xC3\xA4"));
  EXPECT_FALSE(CmpiName::equal("@", "`"));
  EXPECT_FALSE(CmpiName::equal("[", "{"));
  EXPECT_TRUE(CmpiName::equal("aZ", "Az"));
}

TEST(NameTest, isEmptyWithoutText) {
  EXPECT_TRUE(CmpiName().empty());
  EXPECT_TRUE(CmpiName(static_cast<const char*>(nullptr)).empty());
  EXPECT_STREQ(CmpiName().c_str(), "");
  EXPECT_EQ(CmpiName(), CmpiName(""));
}

TEST(NameTest, copiesOutliveTheTextTheyWereMadeFrom) {
  CmpiName copy;
  {
    std::string text = "Temporary";
    const CmpiName name(text);
    copy = name;
    text = "overwritten";
  }
  EXPECT_EQ(copy.str(), "Temporary");
  EXPECT_STREQ(copy.c_str(), "Temporary");
}

struct TypeRow {
  CmpiData data;
  CMPIType type;
};

TEST(DataTest, everyKindHasItsType) {
  const TypeRow rows[] = {
      {CmpiData(true), CMPI_boolean},
      {CmpiData(std::uint8_t{1}), CMPI_uint8},
      {CmpiData(std::uint16_t{1}), CMPI_uint16},
      {CmpiData(std::uint32_t{1}), CMPI_uint32},
      {CmpiData(std::uint64_t{1}), CMPI_uint64},
      {CmpiData(std::int8_t{1}), CMPI_sint8},
      {CmpiData(std::int16_t{1}), CMPI_sint16},
      {CmpiData(std::int32_t{1}), CMPI_sint32},
      {CmpiData(std::int64_t{1}), CMPI_sint64},
      {CmpiData(1.5), CMPI_real64},
      {CmpiData("text"), CMPI_string},
      {CmpiData(std::string_view("text")), CMPI_string},
      {CmpiData(std::string("text")), CMPI_string},
      {CmpiData(CmpiDateTime(1, false)), CMPI_dateTime},
      {CmpiData(CmpiObjectPath("n", "C")), CMPI_ref},
      {CmpiData(CmpiArray(1, CMPI_uint16)), CMPI_uint16 | CMPI_ARRAY},
      {CmpiData(), CMPI_null},
      {CmpiData::null(CMPI_uint32), CMPI_uint32},
  };
  for (const TypeRow& row : rows) EXPECT_EQ(row.data.type(), row.type);
}

TEST(DataTest, extremesAreKept) {
  EXPECT_EQ(CmpiData(std::uint64_t{18446744073709551615u}).asUnsigned(), 18446744073709551615u);
  EXPECT_EQ(CmpiData(std::int64_t{-9223372036854775807 - 1}).asSigned(), -9223372036854775807 - 1);
  EXPECT_EQ(CmpiData(std::int8_t{-128}).asSigned(), -128);
}

TEST(DataTest, askingForAnotherKindIsAMismatch) {
  EXPECT_EQ(codeOf([] { CmpiData("5").asUnsigned(); }), CMPI_RC_ERR_TYPE_MISMATCH);
  EXPECT_EQ(codeOf([] { CmpiData(std::uint8_t{5}).asSigned(); }), CMPI_RC_ERR_TYPE_MISMATCH);
  EXPECT_EQ(codeOf([] { CmpiData(std::int8_t{5}).asUnsigned(); }), CMPI_RC_ERR_TYPE_MISMATCH);
  EXPECT_EQ(codeOf([] { CmpiData(std::uint8_t{1}).asBoolean(); }), CMPI_RC_ERR_TYPE_MISMATCH);
  EXPECT_EQ(codeOf([] { CmpiData(true).asString(); }), CMPI_RC_ERR_TYPE_MISMATCH);
  EXPECT_EQ(codeOf([] { CmpiData("x").asArray(); }), CMPI_RC_ERR_TYPE_MISMATCH);
  EXPECT_EQ(codeOf([] { CmpiData("x").asReference(); }), CMPI_RC_ERR_TYPE_MISMATCH);
  EXPECT_EQ(codeOf([] { CmpiData("x").asDateTime(); }), CMPI_RC_ERR_TYPE_MISMATCH);
  EXPECT_EQ(codeOf([] { CmpiData(1.0).asSigned(); }), CMPI_RC_ERR_TYPE_MISMATCH);
}

TEST(DataTest, aNullIsNoValueOfItsType) {
  const CmpiData null = CmpiData::null(CMPI_boolean);
  EXPECT_TRUE(null.isNull());
  EXPECT_EQ(codeOf([&] { null.asBoolean(); }), CMPI_RC_ERR_TYPE_MISMATCH);
  EXPECT_FALSE(null == CmpiData(false));
  EXPECT_FALSE(null == CmpiData::null(CMPI_string));
  EXPECT_EQ(null, CmpiData::null(CMPI_boolean));
}

TEST(DataTest, keysCompareByValueWhateverTheirWidth) {
  EXPECT_TRUE(CmpiData::sameKey(std::uint8_t{5}, std::uint64_t{5}));
  EXPECT_TRUE(CmpiData::sameKey(std::int32_t{5}, std::uint16_t{5}));
  EXPECT_FALSE(CmpiData::sameKey(std::int64_t{-1}, std::uint64_t{18446744073709551615u}));
  EXPECT_FALSE(CmpiData::sameKey(std::int64_t{-5}, std::int64_t{5}));
  EXPECT_TRUE(CmpiData::sameKey(std::int8_t{-5}, std::int64_t{-5}));
  EXPECT_FALSE(CmpiData::sameKey("5", std::uint8_t{5}));
  EXPECT_FALSE(CmpiData::sameKey("a", "A")) << "text keys have a case";
  EXPECT_FALSE(CmpiData::sameKey(CmpiData::null(CMPI_uint8), std::uint8_t{0}));
  EXPECT_EQ(CmpiData(std::uint8_t{5}).keyHash(), CmpiData(std::int64_t{5}).keyHash());
}

TEST(ArrayTest, startsWithNulls) {
  const CmpiArray array(2, CMPI_string);
  ASSERT_EQ(array.size(), 2u);
  EXPECT_EQ(array[0], CmpiData::null(CMPI_string));
}

TEST(ArrayTest, takesItsOwnTypeWithinItsSize) {
  CmpiArray array(1, CMPI_uint16);
  array.setElementAt(0, std::uint16_t{7});
  EXPECT_EQ(array[0], CmpiData(std::uint16_t{7}));
  EXPECT_EQ(codeOf([&] { array.setElementAt(0, std::uint32_t{7}); }), CMPI_RC_ERR_TYPE_MISMATCH);
  EXPECT_EQ(codeOf([&] { array.setElementAt(1, std::uint16_t{7}); }), CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_EQ(array[0], CmpiData(std::uint16_t{7}));
}

TEST(ArrayTest, aChangeOfACopyIsItsOwn) {
  CmpiArray array(2, CMPI_uint16);
  array.setElementAt(0, std::uint16_t{7});
  CmpiArray copy = array;
  copy.setElementAt(0, std::uint16_t{8});
  EXPECT_EQ(array[0], CmpiData(std::uint16_t{7}));
  array.setElementAt(1, std::uint16_t{9});
  EXPECT_EQ(copy[0], CmpiData(std::uint16_t{8}));
  EXPECT_TRUE(copy[1].isNull());
  const CmpiArray moved = std::move(copy);
  EXPECT_EQ(moved[0], CmpiData(std::uint16_t{8}));
}

TEST(ArrayTest, isEqualByTypeAndElements) {
  EXPECT_EQ(CmpiArray(1, CMPI_uint16), CmpiArray(1, CMPI_uint16));
  EXPECT_FALSE(CmpiArray(1, CMPI_uint16) == CmpiArray(2, CMPI_uint16));
  EXPECT_FALSE(CmpiArray(0, CMPI_uint16) == CmpiArray(0, CMPI_uint32));
}

std::vector<std::string> names(const CmpiInstance& instance) {
  std::vector<std::string> all;
  for (const auto& property : instance.properties()) all.push_back(property.name.str());
  return all;
}

TEST(InstanceTest, keepsTheOrderOfAddingAndReplacesInPlace) {
  CmpiInstance instance(CmpiObjectPath("n", "C"));
  instance.addProperty("B", std::uint8_t{1});
  instance.addProperty("A", std::uint8_t{2});
  instance.addProperty("b", "other");
  EXPECT_THAT(names(instance), testing::ElementsAre("B", "A"));
  EXPECT_EQ(instance.getProperty("B"), CmpiData("other"));
  EXPECT_EQ(instance.className(), CmpiName("C"));
}

TEST(InstanceTest, aMissingPropertyIsNullOrAnError) {
  const CmpiInstance instance;
  EXPECT_EQ(instance.findProperty("A"), nullptr);
  EXPECT_EQ(codeOf([&] { instance.getProperty("A"); }), CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

TEST(InstanceTest, keepsOnlyWhatAListNames) {
  const auto three = [] {
    CmpiInstance instance;
    for (const char* name : {"One", "Two", "Three"}) instance.addProperty(name, true);
    return instance;
  };
  CmpiInstance all = three(), two = three(), none = three();
  const char* list[] = {"THREE", "one", "Four", nullptr};
  const char* empty[] = {nullptr};
  all.keepOnly(nullptr);
  two.keepOnly(list);
  none.keepOnly(empty);
  EXPECT_THAT(names(all), testing::ElementsAre("One", "Two", "Three"));
  EXPECT_THAT(names(two), testing::ElementsAre("One", "Three"));
  EXPECT_TRUE(names(none).empty());
}

TEST(ArgsTest, areFoundByNameAndReplaced) {
  CmpiArgs args;
  args.setArg("In", std::uint8_t{1});
  args.setArg("IN", std::uint8_t{2});
  ASSERT_EQ(args.arguments().size(), 1u);
  EXPECT_EQ(*args.findArg("in"), CmpiData(std::uint8_t{2}));
  EXPECT_EQ(args.findArg("Out"), nullptr);
}

TEST(StatusTest, saysItsMessageElseItsCode) {
  EXPECT_STREQ(CmpiStatus(CMPI_RC_ERR_FAILED, "disk full").what(), "disk full");
  EXPECT_EQ(CmpiStatus(CMPI_RC_ERR_FAILED, "disk full").msg(), "disk full");
  EXPECT_STREQ(CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER).what(), "invalid parameter");
  EXPECT_EQ(CmpiStatus(CMPI_RC_ERR_INVALID_PARAMETER).msg(), "");
  EXPECT_STREQ(CmpiStatus(CMPI_RC_ERR_ACCESS_DENIED, "").what(), "access denied");
  EXPECT_STREQ(CmpiStatus(static_cast<CMPIrc>(123)).what(), "CIM status 123");
}

}  // namespace
}  // namespace CmpiCpp
