// Every fact of a snapshot says where it comes from.
#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
#include <set>

#include "recorded/Origins.h"

namespace ZEB::ethernet {
namespace {

TEST(Origins, OfEveryFactAndOfNothingElse) {
  const auto facts = nlohmann::json::parse(factsAsJson());
  std::set<std::string> keys;
  for (const auto& fact : facts) {
    EXPECT_TRUE(fact["from"].is_string()) << fact;
    EXPECT_NE(fact["values"][0], fact["values"][1]) << fact;
    EXPECT_TRUE(keys.insert(fact["key"]).second) << fact;
  }
  for (const Origin& origin : origins()) {
    EXPECT_TRUE(keys.contains(std::string(origin.key))) << origin.key;
    EXPECT_FALSE(origin.from.empty()) << origin.key;
  }
  EXPECT_EQ(keys.size(), origins().size());
}

}  // namespace
}  // namespace ZEB::ethernet
