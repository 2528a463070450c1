#include <gmock/gmock.h>

#include "common/Configuration.h"
#include "support/Environment.h"
#include "support/TestFolder.h"

namespace ZEB {
namespace {

using test::Environment;
using test::TestFolder;
using testing::ElementsAre;
using testing::IsEmpty;

/// A key with a good value and a bad one; `read` shows what the configuration made of it as text.
struct Key {
  const char* name;
  const char* variable;
  const char* good;  ///< as the file has it
  const char* variableGood;
  const char* read;      ///< the good value, read back
  const char* fallback;  ///< the default, read back
  const char* bad;       ///< as the file has it; null when every text is good
  const char* variableBad;
  const char* expected;
  std::string (*get)(const Configuration&);
};

std::string flag(bool value) {
  return value ? "true" : "false";
}

const std::vector<Key>& keys() {
  static const std::vector<Key> kKeys = {
      {"source-file", "ZEB_SOURCE_FILE", "\"/s.json\"", "/s.json", "/s.json", "", "5", nullptr, "a file name",
       [](const Configuration& c) { return c.sourceFile; }},
      {"include-virtual", "ZEB_INCLUDE_VIRTUAL", "true", "1", "true", "false", "\"yes\"", "yes",
       "true or false", [](const Configuration& c) { return flag(c.includeVirtual); }},
      {"store-directory", "ZEB_STORE_DIR", "\"/st\"", "/st/", "/st/", "/var/lib/qv-zeb/", "\"\"", "",
       "a directory, from / on", [](const Configuration& c) { return c.storeDirectory; }},
      {"run-directory", "ZEB_RUN_DIR", "\"/r/\"", "/r", "/r/", "/run/qv-zeb/", "7", "",
       "a directory, from / on, or \"none\"", [](const Configuration& c) { return c.runDirectory; }},
      {"records-file", "ZEB_RECORDS", "\"/rec.toml\"", "/rec.toml", "/rec.toml", "", "[1]", nullptr,
       "a file name", [](const Configuration& c) { return c.recordsFile; }},
      {"log-target", "ZEB_LOG_TARGET", "\"stderr\"", "stderr", "stderr", "syslog", "\"file\"", "",
       "\"syslog\", \"stderr\" or \"none\"", [](const Configuration& c) { return c.logTarget; }},
      {"log-level", "ZEB_LOG_LEVEL", "\"info\"", "info", "2", "1", "\"debug\"", "INFO",
       "\"error\", \"warn\" or \"info\"",
       [](const Configuration& c) { return std::to_string(static_cast<int>(c.logLevel)); }},
      {"autostart", "ZEB_AUTOSTART", "false", "0", "false", "true", "1", "on", "true or false",
       [](const Configuration& c) { return flag(c.autostart); }},
      {"perfmon", "ZEB_PERFMON", "true", "true", "true", "false", "1.5", "TRUE", "true or false",
       [](const Configuration& c) { return flag(c.perfmon); }},
      {"heartbeat", "ZEB_HEARTBEAT", "true", "1", "true", "false", "\"\"", "", "true or false",
       [](const Configuration& c) { return flag(c.heartbeat); }},
      {"link-settle-seconds", "ZEB_LINK_SETTLE_SECONDS", "0", "0", "0", "6", "601", "-1", "0 to 600",
       [](const Configuration& c) { return std::to_string(c.linkSettle.count()); }},
      {"computer-system-path", "ZEB_COMPUTER_SYSTEM_PATH", "'n:C.K=\"x\"'", "n:C.K=\"x\"", "n:C.K=\"x\"", "",
       "\"root/cimv2:C\"", "C.K=\"x\"", "an object path with namespace and keys",
       [](const Configuration& c) {
         return c.computerSystemPath ? c.computerSystemPath->str() : std::string();
       }},
  };
  return kKeys;
}

class ConfigurationTest : public testing::Test {
 protected:
  ConfigurationTest() {
    for (const Key& key : keys()) unsetenv(key.variable);
  }

  Configuration load(const std::string& text) {
    directory.write("zeb.toml", text);
    return Configuration::load();
  }

  TestFolder directory;
  Environment file{"ZEB_CONFIG", directory.file("zeb.toml")};
};

TEST_F(ConfigurationTest, withoutAFileEveryDefaultHoldsAndNothingIsSaid) {
  const Configuration configuration = Configuration::load();
  for (const Key& key : keys()) EXPECT_EQ(key.get(configuration), key.fallback) << key.name;
  EXPECT_THAT(configuration.warnings, IsEmpty());
}

TEST_F(ConfigurationTest, anEmptyFileIsAllDefaults) {
  const Configuration configuration = load("# nothing\n\n");
  for (const Key& key : keys()) EXPECT_EQ(key.get(configuration), key.fallback) << key.name;
  EXPECT_THAT(configuration.warnings, IsEmpty());
}

TEST_F(ConfigurationTest, everyKeyInTheFile) {
  for (const Key& key : keys()) {
    const Configuration configuration = load(std::string(key.name) + " = " + key.good + "\n");
    EXPECT_THAT(configuration.warnings, IsEmpty()) << key.name;
    for (const Key& other : keys()) {
      const char* expected = &other == &key ? key.read : other.fallback;
      EXPECT_EQ(other.get(configuration), expected) << key.name << " " << other.name;
    }
  }
}

TEST_F(ConfigurationTest, everyKeyInTheEnvironment) {
  for (const Key& key : keys()) {
    const Environment variable(key.variable, key.variableGood);
    const Configuration configuration = load("");
    EXPECT_EQ(key.get(configuration), key.read) << key.variable;
    EXPECT_THAT(configuration.warnings, IsEmpty()) << key.variable;
  }
}

TEST_F(ConfigurationTest, theEnvironmentStandsAboveTheFile) {
  for (const Key& key : keys()) {
    const Environment variable(key.variable, key.variableGood);
    const Configuration configuration = load(std::string(key.name) + " = " + key.good);
    EXPECT_EQ(key.get(configuration), key.read);
  }
  const Environment level("ZEB_LOG_LEVEL", "error");
  EXPECT_EQ(load("log-level = \"info\"").logLevel, LogLevel::Error);
}

TEST_F(ConfigurationTest, secondsAreDigitsAlone) {
  for (const char* text : {"6s", "6.5", "6 ", " 6", ""}) {
    const Environment variable("ZEB_LINK_SETTLE_SECONDS", text);
    const Configuration configuration = load("link-settle-seconds = 3");
    EXPECT_EQ(configuration.linkSettle.count(), 3) << text;
    EXPECT_EQ(configuration.warnings.size(), 1u) << text;
  }
}

TEST_F(ConfigurationTest, anEmptyComputerSystemPathIsThePlugInsOwn) {
  const Environment variable("ZEB_COMPUTER_SYSTEM_PATH", "");
  const Configuration configuration = load("computer-system-path = 'n:C.K=\"x\"'");
  EXPECT_FALSE(configuration.computerSystemPath);
  EXPECT_THAT(configuration.warnings, IsEmpty());
}

TEST_F(ConfigurationTest, aBadValueInTheFileNamesLineAndKeyAndTheDefaultHolds) {
  for (const Key& key : keys()) {
    const Configuration configuration = load("# one\n\n" + std::string(key.name) + " = " + key.bad + "\n");
    EXPECT_EQ(key.get(configuration), key.fallback) << key.name;
    EXPECT_THAT(configuration.warnings,
                ElementsAre(directory.file("zeb.toml") + ":3: " + key.name + " has to be " + key.expected));
  }
}

TEST_F(ConfigurationTest, aBadValueInTheEnvironmentNamesTheVariableAndTheFileHolds) {
  for (const Key& key : keys()) {
    if (!key.variableBad) continue;
    const Environment variable(key.variable, key.variableBad);
    const Configuration configuration = load(std::string(key.name) + " = " + key.good);
    EXPECT_EQ(key.get(configuration), key.read) << key.variable;
    EXPECT_THAT(configuration.warnings,
                ElementsAre(std::string("environment: ") + key.variable + " has to be " + key.expected));
  }
}

TEST_F(ConfigurationTest, anUnknownKeyIsNamedWithItsLine) {
  const Configuration configuration = load("perfmon = true\nlog-levle = \"info\"\n[section]\nx = 1\n");
  EXPECT_TRUE(configuration.perfmon);
  EXPECT_THAT(configuration.warnings,
              testing::UnorderedElementsAre(directory.file("zeb.toml") + ":2: unknown key log-levle",
                                            directory.file("zeb.toml") + ":3: unknown key section"));
}

TEST_F(ConfigurationTest, aFileThatIsNoTomlIsNamedWithTheLine) {
  const Configuration configuration = load("perfmon = true\nthis is = = nothing\n");
  EXPECT_FALSE(configuration.perfmon);
  ASSERT_EQ(configuration.warnings.size(), 1u);
  EXPECT_THAT(configuration.warnings[0], testing::StartsWith(directory.file("zeb.toml") + ":2: "));
}

/// The parser goes as deep as it is told.
TEST_F(ConfigurationTest, aLineOrAFileThatIsTooLongIsNamedAndTheDefaultsHold) {
  std::string deep = "a";
  for (int i = 0; i < 3'000'000; ++i) deep += ".a";
  for (const std::string& content :
       {"perfmon = true\n" + deep + " = 1\n", std::string(300'000, '\n') + "perfmon = true\n",
        "perfmon = true\n#" + std::string(5000, 'x') + "\n"}) {
    const Configuration configuration = load(content);
    EXPECT_FALSE(configuration.perfmon);
    ASSERT_EQ(configuration.warnings.size(), 1u);
    EXPECT_THAT(configuration.warnings[0], testing::EndsWith(": a line or the file is too long"));
  }
}

TEST_F(ConfigurationTest, aDirectoryInPlaceOfTheFileIsAWarning) {
  std::filesystem::create_directory(directory.file("zeb.toml"));
  EXPECT_EQ(Configuration::load().warnings.size(), 1u);
}

TEST_F(ConfigurationTest, theCurrentOneIsReadOnceUntilReset) {
  directory.write("zeb.toml", "perfmon = true");
  Configuration::reset();
  EXPECT_TRUE(Configuration::current()->perfmon);
  directory.write("zeb.toml", "");
  EXPECT_TRUE(Configuration::current()->perfmon);
  Configuration::reset();
  EXPECT_FALSE(Configuration::current()->perfmon);
}

}  // namespace
}  // namespace ZEB
