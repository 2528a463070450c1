#include "server/ServerSettings.h"

#include <toml++/toml.h>

#include <algorithm>
#include <array>
#include <filesystem>

#include "broker/HostError.h"

namespace ZebHost {
namespace {

struct TextRow {
  std::string_view key;
  std::string ServerSettings::*member;
};

struct NumberRow {
  std::string_view key;
  std::int64_t lowest, highest;
  void (*set)(ServerSettings&, std::int64_t);
};

constexpr std::array kTexts = {
    TextRow{"listen.http", &ServerSettings::http},
    TextRow{"listen.https", &ServerSettings::https},
    TextRow{"listen.certificate", &ServerSettings::certificate},
    TextRow{"listen.key", &ServerSettings::key},
    TextRow{"access.pam-service", &ServerSettings::pamService},
    TextRow{"access.pam-folder", &ServerSettings::pamFolder},
    TextRow{"access.write-group", &ServerSettings::writeGroup},
    TextRow{"state.directory", &ServerSettings::stateDirectory},
};

constexpr std::array kNumbers = {
    NumberRow{"limits.connections", 1, 10'000,
              [](ServerSettings& s, std::int64_t n) { s.connections = static_cast<unsigned>(n); }},
    NumberRow{"limits.connections-per-address", 1, 10'000,
              [](ServerSettings& s, std::int64_t n) { s.connectionsPerAddress = static_cast<unsigned>(n); }},
    NumberRow{"limits.request-bytes", 1024, 1 << 28,
              [](ServerSettings& s, std::int64_t n) { s.requestBytes = static_cast<unsigned>(n); }},
    NumberRow{"limits.waiting-bytes", 1024, 1 << 30,
              [](ServerSettings& s, std::int64_t n) { s.waitingBytes = static_cast<unsigned>(n); }},
    NumberRow{"limits.request-seconds", 1, 3600,
              [](ServerSettings& s, std::int64_t n) { s.requestTime = std::chrono::seconds(n); }},
    NumberRow{"limits.call-seconds", 1, 3600,
              [](ServerSettings& s, std::int64_t n) { s.callTime = std::chrono::seconds(n); }},
    NumberRow{"limits.patience-milliseconds", 10, 3'600'000,
              [](ServerSettings& s, std::int64_t n) { s.patience = std::chrono::milliseconds(n); }},
};

/// False when the value is not what the key takes.
bool take(ServerSettings& settings, const std::string& key, const toml::node& value, bool& known) {
  const auto text = std::find_if(kTexts.begin(), kTexts.end(), [&](auto& row) { return row.key == key; });
  const auto number =
      std::find_if(kNumbers.begin(), kNumbers.end(), [&](auto& row) { return row.key == key; });
  known = text != kTexts.end() || number != kNumbers.end();
  if (text != kTexts.end()) {
    if (!value.is_string()) return false;
    settings.*text->member = **value.as_string();
  } else if (known) {
    if (!value.is_integer()) return false;
    const std::int64_t given = **value.as_integer();
    if (given < number->lowest || given > number->highest) return false;
    number->set(settings, given);
  }
  return true;
}

}  // namespace

ServerSettings readServerSettings(const std::string& file,
                                  const std::function<void(const std::string&)>& warn) {
  ServerSettings settings;
  std::error_code ignored;
  if (!std::filesystem::exists(file, ignored)) return settings;
  toml::table tables;
  try {
    tables = toml::parse_file(file);
  } catch (const toml::parse_error& error) {
    throw HostError(file + ":" + std::to_string(error.source().begin.line) + ": " +
                    std::string(error.description()));
  }
  const auto say = [&](const toml::node& node, const std::string& what) {
    warn(file + ":" + std::to_string(node.source().begin.line) + ": " + what);
  };
  for (const auto& [section, content] : tables) {
    const std::string name(section.str());
    if (!content.is_table()) {
      say(content, "'" + name + "' is unknown");
      continue;
    }
    for (const auto& [key, value] : *content.as_table()) {
      const std::string whole = name + "." + std::string(key.str());
      bool known = false;
      if (!take(settings, whole, value, known)) say(value, "'" + whole + "' has a bad value");
      if (!known) say(value, "'" + whole + "' is unknown");
    }
  }
  return settings;
}

}  // namespace ZebHost
