#include <gmock/gmock.h>

#include <fstream>
#include <regex>
#include <sstream>

#include "posix/TemporaryFolder.h"
#include "server/ServerSettings.h"
#include "values/ManagerError.h"

namespace ZebManager {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;
using testing::ElementsAre;
using testing::IsEmpty;

/// A file, what is read from it, and the lines about it.
class SettingsFile {
 public:
  explicit SettingsFile(const std::string& content) {
    std::ofstream(_file) << content;
    _settings = readServerSettings(_file, false, [this](const std::string& line) {
      _warnings.push_back(line.starts_with(_file) ? line.substr(_file.size()) : line);
    });
  }
  const ServerSettings& settings() const { return _settings; }
  /// Without the name of the file in front.
  const std::vector<std::string>& warnings() const { return _warnings; }

 private:
  const ZEB::TemporaryFolder _directory;
  const std::string _file = (_directory / "zebcim.toml").string();
  ServerSettings _settings;
  std::vector<std::string> _warnings;
};

/// Why the server does not start with that file; empty when it does.
std::string refusalOf(const std::string& content) {
  try {
    SettingsFile{content};
    return {};
  } catch (const ManagerError& error) {
    return error.what();
  }
}

std::string fileWith(const std::string& key, const std::string& value) {
  const std::size_t dot = key.find('.');
  return "[" + key.substr(0, dot) + "]\n" + key.substr(dot + 1) + " = " + value + "\n";
}

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

TEST(ServerSettings, NamesOfTheMachineAreAListOfTexts) {
  EXPECT_THAT(ServerSettings().names, IsEmpty());
  EXPECT_THAT(SettingsFile(fileWith("listen.names", R"(["a.example", "b"])")).settings().names,
              ElementsAre("a.example", "b"));
  for (const char* const value : {"\"a\"", "[5]", "[\"\"]", "{}"}) {
    EXPECT_THAT(
        refusalOf(fileWith("listen.names", value)),
        testing::EndsWith(":2: 'listen.names' has a bad value: expected a list of texts that are not empty"));
  }
}

TEST(ServerSettings, AlertmanagersAreUrlsToWhichAPathCanBeAdded) {
  const std::string key = "alertmanager.urls";
  EXPECT_THAT(ServerSettings().alertmanager.urls, IsEmpty());
  EXPECT_THAT(
      SettingsFile(fileWith(key, R"(["http://a:9093", "https://b/am/"])")).settings().alertmanager.urls,
      ElementsAre("http://a:9093", "https://b/am/"));
  for (const char* const value :
       {"\"http://a\"", "[5]", "[\"\"]", "[\"a:9093\"]", "[\"ftp://a\"]", "[\"http://a\", \"http://u:p@b\"]",
        "[\"http://a/?x\"]", "[\"http://a/#x\"]"}) {
    const SettingsFile file(fileWith(key, value));
    EXPECT_THAT(file.warnings(),
                ElementsAre(":2: 'alertmanager.urls' has a bad value: expected a list of http or https URLs, "
                            "without user, query and fragment; the default holds"))
        << value;
    EXPECT_THAT(file.settings().alertmanager.urls, IsEmpty());
  }
}

TEST(ServerSettings, LabelsOfTheSiteAreNamesWithValues) {
  const std::string key = "alertmanager.labels";
  EXPECT_THAT(ServerSettings().alertmanager.labels, IsEmpty());
  EXPECT_THAT(SettingsFile(fileWith(key, R"(["site=fra", "rack=1=2"])")).settings().alertmanager.labels,
              ElementsAre(testing::Pair("rack", "1=2"), testing::Pair("site", "fra")));
  for (const char* const value :
       {"\"a=b\"", "[\"a\"]", "[\"a-b=c\"]", "[\"alertname=x\"]", "[\"a=b\", \"a=c\"]"}) {
    const SettingsFile file(fileWith(key, value));
    EXPECT_THAT(file.warnings(),
                ElementsAre(testing::HasSubstr(
                    "'alertmanager.labels' has a bad value: expected a list of \"name=value\"")))
        << value;
    EXPECT_THAT(file.settings().alertmanager.labels, IsEmpty());
  }
}

TEST(ServerSettings, ListenersAreVerifiedUnlessTheFileSaysOtherwise) {
  const std::string key = "delivery.verify-listeners";
  EXPECT_TRUE(ServerSettings().delivery.verifyCertificates);
  EXPECT_FALSE(SettingsFile(fileWith(key, "false")).settings().delivery.verifyCertificates);
  const SettingsFile wrong(fileWith(key, "\"no\""));
  EXPECT_TRUE(wrong.settings().delivery.verifyCertificates);
  EXPECT_THAT(wrong.warnings(),
              ElementsAre(":2: 'delivery.verify-listeners' has a bad value: expected true or false; the "
                          "default holds"));
}

TEST(ServerSettings, BothWaysOfSayingNowhereAreTaken) {
  EXPECT_TRUE(isNowhere(SettingsFile("[listen]\nhttp = \"none\"\n").settings().http));
  EXPECT_TRUE(isNowhere(SettingsFile("[listen]\nhttps = \"\"\n").settings().https));
  EXPECT_FALSE(isNowhere(ServerSettings().http));
}

class Places : public testing::TestWithParam<std::pair<const char*, bool>> {};
INSTANTIATE_TEST_SUITE_P(All, Places,
                         testing::Values(std::pair{"0.0.0.0:5988", true}, std::pair{"*:0", true},
                                         std::pair{"[fe80::1]:5988", true}, std::pair{"::1", false},
                                         std::pair{"[::1]", false}, std::pair{"127.0.0.1:", false},
                                         std::pair{":5988", false}, std::pair{"127.0.0.1:-1", false},
                                         std::pair{"127.0.0.1:59 ", false},
                                         std::pair{"host.example:5988", false},
                                         std::pair{"256.0.0.1:5988", false}));

TEST_P(Places, ArePlacesOrNot) {
  const auto& [text, good] = GetParam();
  EXPECT_EQ(refusalOf(fileWith("listen.http", "\"" + std::string(text) + "\"")).empty(), good) << text;
}

TEST(ServerSettings, TheFirstPauseIsNotLongerThanTheLongest) {
  const SettingsFile file(
      "[plugin]\nfirst-pause-milliseconds = 50\nlongest-pause-milliseconds = 49\n"
      "[delivery]\nfirst-pause-milliseconds = 60001\n");
  EXPECT_THAT(file.warnings(), ElementsAre(": 'plugin.first-pause-milliseconds' is longer than "
                                           "'plugin.longest-pause-milliseconds'; the defaults hold",
                                           ": 'delivery.first-pause-milliseconds' is longer than "
                                           "'delivery.longest-pause-milliseconds'; the defaults hold"));
  EXPECT_EQ(file.settings().plugin.firstBackOff, milliseconds(100));
  EXPECT_EQ(file.settings().plugin.longestBackOff, milliseconds(5000));
  EXPECT_EQ(file.settings().delivery.firstPause, milliseconds(1000));
}

TEST(ServerSettings, AKeyWithoutItsCertificateIsRefused) {
  EXPECT_THAT(refusalOf("[listen]\nkey = \"/b.pem\"\n"),
              testing::EndsWith(": 'listen.key' is of no use without 'listen.certificate'"));
  EXPECT_THAT(SettingsFile("[listen]\nkey = \"/b.pem\"\ncertificate = \"/a.pem\"\n").warnings(), IsEmpty());
}

TEST(ServerSettings, CertificatesHaveAnAuthorityAndUsers) {
  const std::string authority = "[listen]\nclient-ca = \"/c.pem\"\n";
  const SettingsFile file(authority + "[access.certificates]\n\"a@example.org\" = \"ann\"\nb = \"ann\"\n");
  EXPECT_THAT(file.warnings(), IsEmpty());
  EXPECT_THAT(file.settings().certificateUsers,
              ElementsAre(testing::Pair("a@example.org", "ann"), testing::Pair("b", "ann")));
  EXPECT_THAT(refusalOf(authority),
              testing::EndsWith(": 'listen.client-ca' is of no use without 'access.certificates'"));
  EXPECT_THAT(refusalOf("[access.certificates]\na = \"b\"\n"),
              testing::EndsWith(": 'access.certificates' is of no use without 'listen.client-ca'"));
  for (const char* const bad :
       {"\"a\"", "[\"a\"]", "{ a = 5 }", "{ a = \"\" }", "{ \"\" = \"a\" }", "{ a = { b = \"c\" } }"}) {
    EXPECT_THAT(
        refusalOf(fileWith("access.certificates", bad)),
        testing::EndsWith(":2: 'access.certificates' has a bad value: expected names, and a user for each"))
        << bad;
  }
  EXPECT_THAT(refusalOf("[listen]\nclients-ca = \"/c.pem\"\n"),
              testing::EndsWith(":2: 'listen.clients-ca' is unknown"));
}

TEST(ServerSettings, WhatIsUnknownIsNamedWithItsLineAndTheRestIsTaken) {
  const SettingsFile file("top = 1\n[limits]\nconections = 5\nconnections = 6\n[cache]\nsize = 1\n");
  EXPECT_THAT(file.warnings(),
              testing::UnorderedElementsAre(":1: 'top' is unknown", ":3: 'limits.conections' is unknown",
                                            ":6: 'cache.size' is unknown"));
  EXPECT_EQ(file.settings().connections, 6U);
}

TEST(ServerSettings, AFileThatIsNotThereIsAllDefaults) {
  const auto warn = [](const std::string& line) { ADD_FAILURE() << line; };
  EXPECT_EQ(readServerSettings("/nowhere/zebcim.toml", true, warn).http, "127.0.0.1:5988");
}

TEST(ServerSettings, AFileThatIsNamedHasToBeThere) {
  const auto warn = [](const std::string&) {};
  EXPECT_THROW(readServerSettings("/nowhere/zebcim.toml", false, warn), ManagerError);
  EXPECT_THROW(readServerSettings("/etc", true, warn), ManagerError) << "a folder";
  EXPECT_THROW(readServerSettings("/dev/zero", true, warn), ManagerError);
}

TEST(ServerSettings, AFileThatIsNoTomlIsRefusedWithItsLine) {
  EXPECT_THAT(refusalOf("[limits]\nconnections = = 5\n"), testing::HasSubstr("zebcim.toml:2: "));
}

TEST(ServerSettings, WhatIsWrongAboutPlacesAndUsersIsRefused) {
  EXPECT_THAT(refusalOf("[access]\nwirte-group = \"few\"\n"),
              testing::EndsWith(":2: 'access.wirte-group' is unknown"));
  EXPECT_THAT(refusalOf("[listen]\nport = 1\n"), testing::EndsWith(":2: 'listen.port' is unknown"));
  EXPECT_THAT(refusalOf("access = \"few\"\n"), testing::EndsWith(":1: 'access' has to be a section"));
}

/// What costs as much stack or memory as a file is long.
TEST(ServerSettings, AFileThatIsNoConfigurationIsRefused) {
  std::string deep = "a", arrays = "x = ";
  for (int i = 0; i < 100'000; ++i) deep += ".a";
  EXPECT_THAT(refusalOf(deep + " = 1\n"), testing::HasSubstr("line 1 is too long"));
  EXPECT_THAT(refusalOf("[" + deep + "]\n"), testing::HasSubstr("line 1 is too long"));
  for (int i = 0; i < 50'000; ++i) arrays += "[\n";
  EXPECT_THAT(refusalOf(arrays), testing::Not(testing::IsEmpty()));
  EXPECT_THAT(refusalOf(std::string(300'000, '\n')), testing::HasSubstr("it is too long"));
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
