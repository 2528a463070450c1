#include <gtest/gtest.h>

#include <nlohmann/json.hpp>

#include "cli/JsonWriter.h"

namespace ZebManager {
namespace {

std::string written(std::string_view text) {
  std::string out;
  JsonWriter(out).text(text);
  return out;
}

TEST(JsonWriter, EscapesWhatStandsAnywhereInAText) {
  for (std::size_t length = 1; length < 20; ++length) {
    for (std::size_t at = 0; at < length; ++at) {
      for (int c = 0; c < 0x80; ++c) {
        std::string text(length, 'a');
        text[at] = static_cast<char>(c);
        EXPECT_EQ(nlohmann::json::parse(written(text)), text) << "character " << c << " at " << at;
      }
    }
  }
}

TEST(JsonWriter, WritesWhatNeedsNoEscapeAsItIs) {
  EXPECT_EQ(written(""), R"("")");
  EXPECT_EQ(written(" !#[]~ /{}:, 0123456789 AZaz"), R"(" !#[]~ /{}:, 0123456789 AZaz")");
  EXPECT_EQ(written("ZEB_EthernetPort.DeviceID=\"JXV:1\",\\"), R"("ZEB_EthernetPort.DeviceID=\"JXV:1\",\\")");
  EXPECT_EQ(written("sixteen letters\n"), R"("sixteen letters\n")");
}

TEST(JsonWriter, KeepsLettersOfSeveralBytesAndReplacesWhatAreNone) {
  EXPECT_EQ(written("Schnittstelle f\xC3\xBCr \"eth0\""), "\"Schnittstelle f\xC3\xBCr \\\"eth0\\\"\"");
  EXPECT_EQ(written("before \"\xFF\" after"), "\"before \\\"\xEF\xBF\xBD\\\" after\"");
}

}  // namespace
}  // namespace ZebManager
