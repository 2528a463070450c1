#include <gmock/gmock.h>

#include <fstream>

#include "SettingsFile.h"
#include "posix/TemporaryFolder.h"
#include "server/ListeningSocket.h"
#include "values/FileText.h"
#include "values/ManagerError.h"

namespace ZebManager {
namespace {

using std::chrono::milliseconds;
using testing::ElementsAre;
using testing::IsEmpty;

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

TEST(ServerSettings, APlaceThatIsOnlyLookedAtStaysFree) {
  const BoundSocket looked = bindAt("127.0.0.1:0");
  EXPECT_EQ(bindAt(looked.address).address, looked.address);
  const BoundSocket served = listenAt(looked.address);
  EXPECT_THROW(bindAt(looked.address), ManagerError);
  EXPECT_EQ(errno, EADDRINUSE);
}

TEST(FileText, IsAllOfAFileAndOfNothingElse) {
  const ZEB::TemporaryFolder folder;
  std::ofstream(folder / "empty");
  std::ofstream(folder / "bytes") << std::string("a\0\n", 3);
  EXPECT_EQ(textOfFile(folder / "empty"), "");
  EXPECT_EQ(textOfFile(folder / "bytes"), std::string("a\0\n", 3));
  EXPECT_THROW(textOfFile(folder / "missing"), ManagerError);
  EXPECT_THROW(textOfFile(folder.path()), ManagerError);
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

}  // namespace
}  // namespace ZebManager
