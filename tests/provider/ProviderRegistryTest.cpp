#include <gtest/gtest.h>

#include "cmpicpp/CmpiProvider.h"
#include "provider/ProviderRegistry.h"

namespace ZEB::test {
namespace {

TEST(ProviderRegistryTest, MakesNothingAfterTheEnd) {
  static int asked = 0;
  ProviderRegistry registry([](const CmpiCpp::CmpiBroker&, const std::string&) {
    ++asked;
    return std::unique_ptr<CmpiCpp::CmpiProvider>();
  });
  EXPECT_EQ(registry.getProvider({}, "Any"), nullptr);
  registry.end();
  EXPECT_EQ(registry.getProvider({}, "Any"), nullptr);
  EXPECT_EQ(asked, 1);
}

}  // namespace
}  // namespace ZEB::test
