#include "server/ServerSettings.h"

#include <array>
#include <filesystem>

#include "server/SettingKeys.h"
#include "values/ManagerError.h"

namespace ZebManager {
namespace {

using Warn = std::function<void(const std::string&)>;

/// `say` names file and line.
void takeSection(ServerSettings& settings, const std::string& section, const toml::table& content,
                 const std::function<void(const toml::node&, const std::string&)>& say) {
  for (const auto& [name, value] : content) {
    const std::string key = section + "." + std::string(name.str());
    const TakenKey taken = takeKey(settings, key, value);
    if (taken.state == KeyState::Unknown) say(value, "'" + key + "' is unknown");
    if (taken.state == KeyState::Bad) {
      say(value, "'" + key + "' has a bad value: expected " + taken.expected + "; the default holds");
    }
  }
}

/// Pauses that grow from the first to the longest.
struct PausesRow {
  const char* section;
  std::chrono::milliseconds& (*first)(ServerSettings&);
  std::chrono::milliseconds& (*longest)(ServerSettings&);
};

constexpr std::array kPauses = {
    PausesRow{"plugin", [](ServerSettings& s) -> std::chrono::milliseconds& { return s.plugin.firstBackOff; },
              [](ServerSettings& s) -> std::chrono::milliseconds& { return s.plugin.longestBackOff; }},
    PausesRow{"delivery",
              [](ServerSettings& s) -> std::chrono::milliseconds& { return s.delivery.firstPause; },
              [](ServerSettings& s) -> std::chrono::milliseconds& { return s.delivery.longestPause; }},
};

void orderPauses(ServerSettings& settings, const std::string& file, const Warn& warn) {
  ServerSettings defaults;
  for (const PausesRow& row : kPauses) {
    if (row.first(settings) <= row.longest(settings)) continue;
    warn(file + ": '" + row.section + ".first-pause-milliseconds' is longer than '" + row.section +
         ".longest-pause-milliseconds'; the defaults hold");
    row.first(settings) = row.first(defaults);
    row.longest(settings) = row.longest(defaults);
  }
}

/// Values that fit alone.
void checkTogether(ServerSettings& settings, const std::string& file, const Warn& warn) {
  orderPauses(settings, file, warn);
  if (!settings.key.empty() && settings.certificate.empty()) {
    warn(file + ": 'listen.key' is not used without 'listen.certificate'");
  }
}

}  // namespace

ServerSettings readServerSettings(const std::string& file, const Warn& warn) {
  ServerSettings settings;
  std::error_code ignored;
  if (!std::filesystem::exists(file, ignored)) return settings;
  toml::table tables;
  try {
    tables = toml::parse_file(file);
  } catch (const toml::parse_error& error) {
    throw ManagerError(file + ":" + std::to_string(error.source().begin.line) + ": " +
                       std::string(error.description()));
  }
  const auto say = [&](const toml::node& node, const std::string& what) {
    warn(file + ":" + std::to_string(node.source().begin.line) + ": " + what);
  };
  for (const auto& [section, content] : tables) {
    const std::string name(section.str());
    if (content.is_table()) {
      takeSection(settings, name, *content.as_table(), say);
    } else {
      say(content, "'" + name + "' is unknown");
    }
  }
  checkTogether(settings, file, warn);
  return settings;
}

}  // namespace ZebManager
