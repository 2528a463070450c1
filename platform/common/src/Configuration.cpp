#include "common/Configuration.h"

#include <toml++/toml.h>

#include <charconv>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <mutex>

namespace ZEB {
namespace {

constexpr const char* kDefaultFile = "/etc/qv-zeb/qv-zeb.toml";

bool parse(std::string_view text, std::string& value) {
  value = text;
  return true;
}

bool parse(std::string_view text, bool& value) {
  value = text == "1" || text == "true";
  return value || text == "0" || text == "false";
}

bool parse(std::string_view text, LogLevel& value) {
  if (text == "error") {
    value = LogLevel::Error;
  } else if (text == "warn") {
    value = LogLevel::Warn;
  } else if (text == "info") {
    value = LogLevel::Info;
  } else {
    return false;
  }
  return true;
}

bool parse(std::string_view text, std::chrono::seconds& value) {
  constexpr unsigned kLongest = 600;
  unsigned seconds = 0;
  const char* end = text.data() + text.size();
  const auto [stop, error] = std::from_chars(text.data(), end, seconds);
  value = std::chrono::seconds(seconds);
  return error == std::errc() && stop == end && seconds <= kLongest;
}

bool parse(std::string_view text, std::optional<CmpiCpp::CmpiObjectPath>& value) {
  value = CmpiCpp::CmpiObjectPath::parse(text);
  return value || text.empty();
}

template <auto Member>
bool set(Configuration& configuration, std::string_view text) {
  auto value = configuration.*Member;
  if (!parse(text, value)) return false;
  configuration.*Member = std::move(value);
  return true;
}

bool setDirectory(std::string& directory, std::string_view text) {
  if (!text.starts_with('/')) return false;
  directory = text;
  if (directory.back() != '/') directory += '/';
  return true;
}

template <std::string Configuration::*Member>
bool setDirectory(Configuration& configuration, std::string_view text) {
  return setDirectory(configuration.*Member, text);
}

bool setRunDirectory(Configuration& configuration, std::string_view text) {
  if (text != "none") return setDirectory(configuration.runDirectory, text);
  configuration.runDirectory.clear();
  return true;
}

bool setLogTarget(Configuration& configuration, std::string_view text) {
  if (text != "syslog" && text != "stderr" && text != "none") return false;
  configuration.logTarget = text;
  return true;
}

/// A key of the file, the environment variable that overrides it, and what it may hold.
struct Key {
  const char* name;
  const char* variable;
  const char* expected;
  bool (*set)(Configuration&, std::string_view text);
  bool isNumber = false;
};

constexpr Key kKeys[] = {
    {"source-file", "ZEB_SOURCE_FILE", "a file name", set<&Configuration::sourceFile>},
    {"include-virtual", "ZEB_INCLUDE_VIRTUAL", "true or false", set<&Configuration::includeVirtual>},
    {"store-directory", "ZEB_STORE_DIR", "a directory, from / on",
     setDirectory<&Configuration::storeDirectory>},
    {"run-directory", "ZEB_RUN_DIR", "a directory, from / on, or \"none\"", setRunDirectory},
    {"records-file", "ZEB_RECORDS", "a file name", set<&Configuration::recordsFile>},
    {"log-target", "ZEB_LOG_TARGET", "\"syslog\", \"stderr\" or \"none\"", setLogTarget},
    {"log-level", "ZEB_LOG_LEVEL", "\"error\", \"warn\" or \"info\"", set<&Configuration::logLevel>},
    {"autostart", "ZEB_AUTOSTART", "true or false", set<&Configuration::autostart>},
    {"perfmon", "ZEB_PERFMON", "true or false", set<&Configuration::perfmon>},
    {"heartbeat", "ZEB_HEARTBEAT", "true or false", set<&Configuration::heartbeat>},
    {"link-settle-seconds", "ZEB_LINK_SETTLE_SECONDS", "0 to 600", set<&Configuration::linkSettle>, true},
    {"computer-system-path", "ZEB_COMPUTER_SYSTEM_PATH", "an object path with namespace and keys",
     set<&Configuration::computerSystemPath>},
};

const Key* findKey(std::string_view name) {
  for (const Key& key : kKeys) {
    if (name == key.name) return &key;
  }
  return nullptr;
}

/// The value as text, whichever of the kinds that the keys know it is.
std::optional<std::string> textOf(const toml::node& node, bool isNumber) {
  if (const auto* text = node.as_string()) return text->get();
  if (const auto* flag = node.as_boolean()) return flag->get() ? "true" : "false";
  if (const auto* number = node.as_integer(); number && isNumber) return std::to_string(number->get());
  return std::nullopt;
}

void apply(Configuration& configuration, const std::string& file, const toml::key& name,
           const toml::node& node) {
  const std::string where = file + ":" + std::to_string(name.source().begin.line) + ": ";
  const Key* key = findKey(name.str());
  if (!key) {
    configuration.warnings.push_back(where + "unknown key " + std::string(name.str()));
    return;
  }
  const auto text = textOf(node, key->isNumber);
  if (!text || !key->set(configuration, *text)) {
    configuration.warnings.push_back(where + key->name + " has to be " + key->expected);
  }
}

/// What is no configuration, by its size or its lines, is none: the parser goes as deep as it is told.
std::string boundedContentOf(const std::string& file) {
  constexpr std::size_t kLongestFile = 256U << 10;
  constexpr std::size_t kLongestLine = 4096;
  std::string content(kLongestFile + 1, '\0');
  std::ifstream in(file, std::ios::binary);
  in.read(content.data(), static_cast<std::streamsize>(content.size()));
  content.resize(static_cast<std::size_t>(in.gcount()));
  for (std::size_t begin = 0, end = 0; begin < content.size(); begin = end + 1) {
    end = std::min(content.find('\n', begin), content.size());
    if (end - begin > kLongestLine || content.size() > kLongestFile)
      throw toml::parse_error("a line or the file is too long", toml::source_region{});
  }
  return content;
}

void readFile(Configuration& configuration, const std::string& file) {
  std::error_code error;
  if (!std::filesystem::exists(file, error)) return;
  // Reading a directory gives an empty text without any complaint.
  if (std::filesystem::is_directory(file, error)) {
    configuration.warnings.push_back(file + " is a directory");
    return;
  }
  try {
    const toml::table table = toml::parse(boundedContentOf(file), file);
    for (const auto& [name, node] : table) apply(configuration, file, name, node);
  } catch (const toml::parse_error& failure) {
    configuration.warnings.push_back(file + ":" + std::to_string(failure.source().begin.line) + ": " +
                                     std::string(failure.description()));
  }
}

void readEnvironment(Configuration& configuration) {
  for (const Key& key : kKeys) {
    const char* text = std::getenv(key.variable);
    if (text && !key.set(configuration, text)) {
      configuration.warnings.push_back(std::string("environment: ") + key.variable + " has to be " +
                                       key.expected);
    }
  }
}

std::mutex currentMutex;
std::shared_ptr<const Configuration> currentConfiguration;

}  // namespace

Configuration Configuration::load() {
  Configuration configuration;
  const char* file = std::getenv("ZEB_CONFIG");
  readFile(configuration, file ? file : kDefaultFile);
  readEnvironment(configuration);
  return configuration;
}

std::shared_ptr<const Configuration> Configuration::current() {
  const std::lock_guard lock(currentMutex);
  if (!currentConfiguration) currentConfiguration = std::make_shared<const Configuration>(load());
  return currentConfiguration;
}

void Configuration::reset() {
  const std::lock_guard lock(currentMutex);
  currentConfiguration.reset();
}

}  // namespace ZEB
