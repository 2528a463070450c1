#include <gmock/gmock.h>

#include <regex>

#include "SettingsFile.h"

namespace ZebManager {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

struct Number {
  const char* key;
  std::int64_t byDefault, lowest, highest;
  std::int64_t (*of)(const ServerSettings&);
};

using S = ServerSettings;

const std::vector<Number> kNumbers = {
    {"limits.connections", 256, 1, 10'000, [](const S& s) -> std::int64_t { return s.connections; }},
    {"limits.connections-per-address", 128, 1, 10'000,
     [](const S& s) -> std::int64_t { return s.connectionsPerAddress; }},
    {"limits.request-bytes", 4'194'304, 1024, 268'435'456,
     [](const S& s) -> std::int64_t { return s.requestBytes; }},
    {"limits.request-depth", 64, 16, 256, [](const S& s) -> std::int64_t { return s.requestDepth; }},
    {"limits.waiting-bytes", 67'108'864, 1024, 1'073'741'824,
     [](const S& s) -> std::int64_t { return s.waitingBytes; }},
    {"limits.answer-bytes", 268'435'456, 1024, 1'073'741'824,
     [](const S& s) -> std::int64_t { return s.answerBytes; }},
    {"limits.request-seconds", 10, 1, 3600,
     [](const S& s) -> std::int64_t { return seconds(s.requestTime).count(); }},
    {"limits.enumerations", 512, 1, 100'000, [](const S& s) -> std::int64_t { return s.pull.most; }},
    {"limits.enumeration-bytes", 67'108'864, 1024, 1 << 30,
     [](const S& s) -> std::int64_t { return static_cast<std::int64_t>(s.pull.bytes); }},
    {"limits.enumeration-seconds", 60, 1, 3600,
     [](const S& s) -> std::int64_t { return s.pull.time.count(); }},
    {"limits.stop-seconds", 5, 3, 3600, [](const S& s) -> std::int64_t { return s.stopTime.count(); }},
    {"limits.call-seconds", 30, 1, 3600,
     [](const S& s) -> std::int64_t { return milliseconds(s.plugin.timeLimit).count() / 1000; }},
    {"limits.patience-milliseconds", 1000, 10, 3'600'000,
     [](const S& s) -> std::int64_t { return milliseconds(s.plugin.patience).count(); }},
    {"plugin.calls", 4, 1, 256, [](const S& s) -> std::int64_t { return s.plugin.calls; }},
    {"plugin.processes", 8, 2, 64, [](const S& s) -> std::int64_t { return s.plugin.processes; }},
    {"plugin.start-seconds", 30, 1, 3600,
     [](const S& s) -> std::int64_t { return milliseconds(s.plugin.startLimit).count() / 1000; }},
    {"plugin.alert-patience-milliseconds", 5000, 10, 3'600'000,
     [](const S& s) -> std::int64_t { return milliseconds(s.plugin.alertPatience).count(); }},
    {"plugin.first-pause-milliseconds", 100, 1, 3'600'000,
     [](const S& s) -> std::int64_t { return milliseconds(s.plugin.firstBackOff).count(); }},
    {"plugin.longest-pause-milliseconds", 5000, 1, 3'600'000,
     [](const S& s) -> std::int64_t { return milliseconds(s.plugin.longestBackOff).count(); }},
    {"delivery.most-waiting", 10'000, 1, 1'000'000,
     [](const S& s) { return static_cast<std::int64_t>(s.delivery.mostWaiting); }},
    {"delivery.longest-wait-seconds", 86'400, 1, 31'536'000,
     [](const S& s) -> std::int64_t { return seconds(s.delivery.longestWait).count(); }},
    {"delivery.first-pause-milliseconds", 1000, 1, 3'600'000,
     [](const S& s) -> std::int64_t { return milliseconds(s.delivery.firstPause).count(); }},
    {"delivery.longest-pause-milliseconds", 60'000, 1, 3'600'000,
     [](const S& s) -> std::int64_t { return milliseconds(s.delivery.longestPause).count(); }},
    {"delivery.connect-seconds", 10, 1, 3600,
     [](const S& s) -> std::int64_t { return milliseconds(s.delivery.connectTimeout).count() / 1000; }},
    {"delivery.answer-seconds", 30, 1, 3600,
     [](const S& s) -> std::int64_t { return milliseconds(s.delivery.answerTimeout).count() / 1000; }},
    {"delivery.most-refusals", 10, 1, 1000,
     [](const S& s) -> std::int64_t { return s.delivery.mostRefusals; }},
    {"alertmanager.resend-seconds", 60, 1, 3600,
     [](const S& s) -> std::int64_t { return s.alertmanager.resend.count(); }},
};

struct Text {
  const char* key;
  const char* byDefault;
  const char* good;
  std::string (*of)(const ServerSettings&);
  const char* bad = nullptr;  ///< a text that does not fit
};

const std::vector<Text> kTexts = {
    {"listen.http", "127.0.0.1:5988", "[::1]:0", [](const S& s) { return s.http; }, "localhost"},
    {"listen.https", "127.0.0.1:5989", "none", [](const S& s) { return s.https; }, "127.0.0.1:65536"},
    {"listen.certificate", "", "/a.pem", [](const S& s) { return s.certificate; }},
    {"listen.key", "", "/b.pem", [](const S& s) { return s.key; }},
    {"listen.client-ca", "", "/c.pem", [](const S& s) { return s.clientAuthority; }},
    {"access.pam-service", "zebcim", "login", [](const S& s) { return s.login.pamService; }, ""},
    {"access.pam-folder", "", "/etc/pam", [](const S& s) { return s.login.pamFolder; }},
    {"access.write-group", "zebcim", "", [](const S& s) { return s.login.writeGroup; }},
    {"state.directory", "/var/lib/zebcim", "/srv/zebcim", [](const S& s) { return s.stateDirectory; }, ""},
    {"delivery.trusted-certificates", "", "/ca.pem",
     [](const S& s) { return s.delivery.trustedCertificates; }},
    {"alertmanager.trusted-certificates", "", "/ca.pem",
     [](const S& s) { return s.alertmanager.trustedCertificates; }},
    {"alertmanager.credentials", "", "/etc/secret", [](const S& s) { return s.alertmanager.credentials; }},
};

std::string nameOf(const std::string& key) {
  return std::regex_replace(key, std::regex("[.-]"), "_");
}

class NumberKeys : public testing::TestWithParam<Number> {};
INSTANTIATE_TEST_SUITE_P(All, NumberKeys, testing::ValuesIn(kNumbers),
                         [](const auto& tested) { return nameOf(tested.param.key); });

TEST_P(NumberKeys, HaveADefaultAndTakeWhatIsInTheirRange) {
  const Number& number = GetParam();
  EXPECT_EQ(number.of(ServerSettings()), number.byDefault);
  // With the other end of its range, in the row for it, a pause is never longer than the longest.
  const std::string key = number.key;
  for (const std::int64_t value : {number.lowest, number.highest}) {
    std::string content = fileWith(key, std::to_string(value));
    if (key.ends_with(".first-pause-milliseconds")) content += "longest-pause-milliseconds = 3600000\n";
    if (key.ends_with(".longest-pause-milliseconds")) content += "first-pause-milliseconds = 1\n";
    const SettingsFile file(content);
    EXPECT_THAT(file.warnings(), IsEmpty());
    EXPECT_EQ(number.of(file.settings()), value);
  }
}

TEST_P(NumberKeys, KeepTheirDefaultWhenTheValueDoesNotFit) {
  const Number& number = GetParam();
  const std::string expected =
      "a whole number from " + std::to_string(number.lowest) + " to " + std::to_string(number.highest);
  for (const std::string& value : {std::to_string(number.lowest - 1), std::to_string(number.highest + 1),
                                   std::string("9223372036854775807"), std::string("-1"), std::string("5.0"),
                                   std::string("\"5\""), std::string("true"), std::string("[5]")}) {
    const SettingsFile file(fileWith(number.key, value));
    EXPECT_THAT(file.warnings(),
                ElementsAre(":2: '" + std::string(number.key) + "' has a bad value: expected " + expected +
                            "; the default holds"))
        << value;
    EXPECT_EQ(number.of(file.settings()), number.byDefault) << value;
  }
}

class TextKeys : public testing::TestWithParam<Text> {};
INSTANTIATE_TEST_SUITE_P(All, TextKeys, testing::ValuesIn(kTexts),
                         [](const auto& tested) { return nameOf(tested.param.key); });

TEST_P(TextKeys, HaveADefaultAndTakeTexts) {
  const Text& text = GetParam();
  EXPECT_EQ(text.of(ServerSettings()), text.byDefault);
  std::string more = text.key == std::string("listen.key") ? "certificate = \"/a.pem\"\n" : "";
  if (text.key == std::string("listen.client-ca")) more = "[access.certificates]\na = \"b\"\n";
  const SettingsFile file(fileWith(text.key, "\"" + std::string(text.good) + "\"") + more);
  EXPECT_THAT(file.warnings(), IsEmpty());
  EXPECT_EQ(text.of(file.settings()), text.good);
}

TEST_P(TextKeys, KeepTheirDefaultWhenTheValueDoesNotFit) {
  const Text& text = GetParam();
  std::vector<std::string> values = {"5", "true", "[\"a\"]", "{}"};
  if (text.bad) values.push_back("\"" + std::string(text.bad) + "\"");
  const std::string wrong = ":2: '" + std::string(text.key) + "' has a bad value: expected a";
  const bool vital =
      std::string(text.key).starts_with("listen.") || std::string(text.key).starts_with("access.");
  for (const std::string& value : values) {
    if (vital) {
      EXPECT_THAT(refusalOf(fileWith(text.key, value)), testing::HasSubstr(wrong)) << value;
      continue;
    }
    const SettingsFile file(fileWith(text.key, value));
    ASSERT_EQ(file.warnings().size(), 1U) << value;
    EXPECT_THAT(file.warnings()[0], testing::StartsWith(wrong));
    EXPECT_EQ(text.of(file.settings()), text.byDefault) << value;
  }
}

/// The file of the package, with every default in it taken for a setting.
TEST(ServerSettings, TheShippedFileNamesEveryKeyAndItsDefault) {
  std::ifstream shipped(ZEB_SHIPPED_SETTINGS);
  std::string content;
  std::size_t keys = 0;
  for (std::string line; std::getline(shipped, line); content += line + "\n") {
    if (!std::regex_match(line, std::regex("#[a-z-]+ = .*"))) continue;
    line.erase(0, 1);
    ++keys;
  }
  const SettingsFile file(content);
  EXPECT_THAT(file.warnings(), IsEmpty());
  // All but access.pam-folder and access.certificates, and with the lists and delivery.verify-listeners.
  EXPECT_EQ(keys, kNumbers.size() + kTexts.size() + 4);
  EXPECT_THAT(content, testing::HasSubstr("\nurls = []\n"));
  EXPECT_THAT(content, testing::HasSubstr("\nlabels = []\n"));
  EXPECT_THAT(content, testing::HasSubstr("\naliases = []\n"));
  EXPECT_THAT(content, testing::HasSubstr("\nnames = []\n"));
  EXPECT_THAT(content, testing::HasSubstr("\nverify-listeners = true\n"));
  for (const Number& number : kNumbers) EXPECT_EQ(number.of(file.settings()), number.byDefault) << number.key;
  for (const Text& text : kTexts) EXPECT_EQ(text.of(file.settings()), text.byDefault) << text.key;
}

}  // namespace
}  // namespace ZebManager
