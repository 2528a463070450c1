#include <gtest/gtest.h>
#include <linux/fib_rules.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include "MessageBuilder.h"
#include "netlink/RtnlDecoders.h"

namespace ZEB::ethernet::test {
namespace {

MessageBuilder rule(int family, int table, int action = FR_ACT_TO_TBL) {
  fib_rule_hdr header{};
  header.family = static_cast<std::uint8_t>(family);
  header.table = static_cast<std::uint8_t>(table);
  header.action = static_cast<std::uint8_t>(action);
  MessageBuilder builder;
  // As the kernel sends every rule, also those that suppress nothing.
  return builder.raw(header).number(FRA_SUPPRESS_PREFIXLEN, 0xFFFFFFFFu);
}

TEST(RuleDecoder, TheTableThatItNames) {
  EXPECT_EQ(decodeRule(rule(AF_INET, RT_TABLE_MAIN).view()), (RuleFacts{IpFamily::V4, 254}));
  EXPECT_EQ(decodeRule(rule(AF_INET6, RT_TABLE_MAIN).view()), (RuleFacts{IpFamily::V6, 254}));
  MessageBuilder wide = rule(AF_INET, RT_TABLE_COMPAT);
  EXPECT_EQ(decodeRule(wide.number(FRA_TABLE, 1001u).view()), (RuleFacts{IpFamily::V4, 1001}));
}

TEST(RuleDecoder, TheTablesOfVrfs) {
  MessageBuilder builder = rule(AF_INET, RT_TABLE_UNSPEC);
  builder.number(FRA_TABLE, 0u).number(FRA_L3MDEV, std::uint8_t{1});
  EXPECT_EQ(decodeRule(builder.view()), (RuleFacts{IpFamily::V4, RuleFacts::kTableOfVrf}));
}

TEST(RuleDecoder, RulesThatLookNoDefaultRouteUpAreNone) {
  EXPECT_FALSE(decodeRule(rule(AF_INET, RT_TABLE_MAIN, FR_ACT_BLACKHOLE).view()));
  EXPECT_FALSE(decodeRule(rule(AF_INET, RT_TABLE_MAIN, FR_ACT_GOTO).view()));
  EXPECT_FALSE(decodeRule(rule(AF_INET, RT_TABLE_UNSPEC).view()));
  EXPECT_FALSE(decodeRule(rule(128, RT_TABLE_MAIN).view())) << "multicast routes have rules of their own";
  EXPECT_FALSE(decodeRule(rule(AF_INET, RT_TABLE_MAIN).view().first(11)));
  EXPECT_FALSE(decodeRule({}));
  for (const std::uint32_t length : {0u, 24u}) {
    MessageBuilder suppressing = rule(AF_INET, RT_TABLE_MAIN);
    EXPECT_FALSE(decodeRule(suppressing.number(FRA_SUPPRESS_PREFIXLEN, length).view())) << length;
  }
}

}  // namespace
}  // namespace ZEB::ethernet::test
