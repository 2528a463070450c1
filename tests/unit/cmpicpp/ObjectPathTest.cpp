#include <gtest/gtest.h>

#include <thread>

#include "cmpicpp/CmpiData.h"
#include "cmpicpp/CmpiStatus.h"

namespace CmpiCpp {
namespace {

CmpiObjectPath port(std::string_view host, std::string_view id) {
  return {"root/jxv", "ZEB_EthernetPort", host, {{"DeviceID", id}}};
}

struct TextRow {
  CmpiObjectPath path;
  std::string text;
};

TEST(ObjectPathTest, textForm) {
  const CmpiObjectPath inner("root/jxv", "Inner", "h", {{"Name", "a\"b"}});
  const TextRow rows[] = {
      {CmpiObjectPath(), ""},
      {{"root/jxv", "C"}, "root/jxv:C"},
      {{"", "C"}, "C"},
      {{"root/jxv", "C", "host", {}}, "//host/root/jxv:C"},
      {port("host", "JXV:ZEB_EthernetPort:1"),
       "//host/root/jxv:ZEB_EthernetPort.DeviceID=\"JXV:ZEB_EthernetPort:1\""},
      {{"n", "C", "", {{"B", "2"}, {"A", "1"}}}, "n:C.B=\"2\",A=\"1\""},
      {{"n", "C", "", {{"K", "say \"hi\" \\ bye"}}}, "n:C.K=\"say \\\"hi\\\" \\\\ bye\""},
      {{"n", "C", "", {{"K", std::uint8_t{5}}}}, "n:C.K=5"},
      {{"n", "C", "", {{"K", std::int32_t{-5}}}}, "n:C.K=-5"},
      {{"n", "C", "", {{"K", std::uint64_t{18446744073709551615u}}}}, "n:C.K=18446744073709551615"},
      {{"n", "C", "", {{"K", true}, {"L", false}}}, "n:C.K=TRUE,L=FALSE"},
      {{"n", "C", "", {{"K", CmpiDateTime(0, false)}}}, "n:C.K=\"19700101000000.000000+000\""},
      {{"n", "C", "", {{"K", CmpiData::null(CMPI_string)}}}, "n:C.K="},
      {{"n", "C", "", {{"Ref", inner}}}, "n:C.Ref=\"//h/root/jxv:Inner.Name=\\\"a\\\\\\\"b\\\"\""},
  };
  for (const TextRow& row : rows) EXPECT_EQ(row.path.str(), row.text);
}

TEST(ObjectPathTest, aTextWithNameSpaceAndTextKeysIsReadBack) {
  for (const char* text :
       {R"(root/cimv2:Site_System.CreationClassName="Site_System",Name="server")",
        R"(//host.example:5989/interop:C.K="")", R"(n:C.K="say \"hi\" \\ bye, a=b.c:d")"}) {
    const auto path = CmpiObjectPath::parse(text);
    ASSERT_TRUE(path) << text;
    EXPECT_EQ(path->str(), text);
  }
}

TEST(ObjectPathTest, aTextThatIsNoSuchPathIsNone) {
  for (const char* text : {"",
                           "C",
                           "n:C",
                           "n:C.",
                           "C.K=\"1\"",
                           ":C.K=\"1\"",
                           "n:.K=\"1\"",
                           "n:C.=\"1\"",
                           "n:C.K",
                           "n:C.K=",
                           "n:C.K=1",
                           "n:C.K=TRUE",
                           "n:C.K=\"1",
                           "n:C.K=\"1\\",
                           "n:C.K=\"1\"x",
                           "n:C.K=\"1\",",
                           "n:C.K=\"1\",k=\"2\"",
                           "n//m:C.K=\"1\"",
                           "/n:C.K=\"1\"",
                           "n/:C.K=\"1\"",
                           "n:C D.K=\"1\"",
                           "n:C.K L=\"1\"",
                           "//n:C.K=\"1\"",
                           "///n:C.K=\"1\"",
                           "n:C.K='1'"}) {
    EXPECT_FALSE(CmpiObjectPath::parse(text)) << text;
  }
}

TEST(ObjectPathTest, isEqualByNamespaceClassAndKeys) {
  EXPECT_EQ(port("a", "1"), port("a", "1"));
  EXPECT_FALSE(port("a", "1") == port("a", "2"));
  EXPECT_EQ(CmpiObjectPath("ROOT/jxv", "zeb_ETHERNETport", "", {{"DEVICEid", "1"}}), port("", "1"));
  EXPECT_FALSE(CmpiObjectPath("root/cimv2", "ZEB_EthernetPort", "", {{"DeviceID", "1"}}) == port("", "1"));
  EXPECT_FALSE(CmpiObjectPath("root/jxv", "ZEB_EthernetTeam", "", {{"DeviceID", "1"}}) == port("", "1"));
  EXPECT_FALSE(CmpiObjectPath("root/jxv", "ZEB_EthernetPort", "", {{"Name", "1"}}) == port("", "1"));
}

TEST(ObjectPathTest, theHostTakesNoPart) {
  EXPECT_EQ(port("a", "1"), port("b", "1"));
  EXPECT_EQ(port("a", "1").hash(), port("", "1").hash());
}

TEST(ObjectPathTest, keysAreEqualInAnyOrderAndWidth) {
  const CmpiObjectPath one("n", "C", "", {{"A", std::uint16_t{1}}, {"B", "x"}});
  const CmpiObjectPath other("n", "C", "", {{"b", "x"}, {"a", std::int64_t{1}}});
  EXPECT_EQ(one, other);
  EXPECT_EQ(one.hash(), other.hash());
  EXPECT_FALSE(one == CmpiObjectPath("n", "C", "", {{"A", std::uint16_t{1}}}));
  EXPECT_FALSE(one == CmpiObjectPath("n", "C", "", {{"A", "x"}, {"B", std::uint16_t{1}}}));
}

TEST(ObjectPathTest, aPathWithinAPathTakesPart) {
  const CmpiObjectPath one("n", "C", "", {{"Ref", port("a", "1")}});
  EXPECT_EQ(one, CmpiObjectPath("n", "C", "", {{"Ref", port("b", "1")}}));
  EXPECT_FALSE(one == CmpiObjectPath("n", "C", "", {{"Ref", port("a", "2")}}));
}

TEST(ObjectPathTest, addingAKeyReplacesOneOfThatName) {
  CmpiObjectPath path("n", "C");
  path.addKey("A", std::string_view("1"));
  path.addKey("B", port("h", "7"));
  path.addKey("a", std::string_view("2"));
  EXPECT_EQ(path.str(), "n:C.A=\"2\",B=\"//h/root/jxv:ZEB_EthernetPort.DeviceID=\\\"7\\\"\"");
}

TEST(ObjectPathTest, aCopyDoesNotSeeLaterChanges) {
  const CmpiObjectPath original = port("h", "1");
  CmpiObjectPath copy = original;
  copy.setHost("other");
  copy.setNameSpace("root/other");
  copy.addKey("More", std::string_view("x"));
  EXPECT_EQ(original.str(), "//h/root/jxv:ZEB_EthernetPort.DeviceID=\"1\"");
  EXPECT_EQ(copy.str(), "//other/root/other:ZEB_EthernetPort.DeviceID=\"1\",More=\"x\"");
  EXPECT_FALSE(copy == original);
}

TEST(ObjectPathTest, keysAreFoundByName) {
  const CmpiObjectPath path = port("h", "1");
  EXPECT_EQ(path.getKey("deviceid"), CmpiData("1"));
  EXPECT_EQ(path.findKey("Name"), nullptr);
  try {
    path.getKey("Name");
    ADD_FAILURE();
  } catch (const CmpiStatus& status) {
    EXPECT_EQ(status.rc(), CMPI_RC_ERR_NO_SUCH_PROPERTY);
  }
}

TEST(ObjectPathTest, anEmptyPathEqualsOnlyAnother) {
  EXPECT_TRUE(CmpiObjectPath().empty());
  EXPECT_EQ(CmpiObjectPath(), CmpiObjectPath());
  EXPECT_FALSE(CmpiObjectPath() == port("h", "1"));
  EXPECT_FALSE(port("h", "1").empty());
}

TEST(ObjectPathTest, isReadAndCopiedFromSeveralThreads) {
  const CmpiObjectPath shared = port("h", "1");
  std::vector<std::thread> threads;
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&shared] {
      for (int i = 0; i < 500; ++i) {
        CmpiObjectPath copy = shared;
        copy.setHost("x");
        EXPECT_EQ(copy, shared);
      }
    });
  }
  for (auto& thread : threads) thread.join();
}

}  // namespace
}  // namespace CmpiCpp
