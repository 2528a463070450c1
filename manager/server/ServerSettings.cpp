#include "server/ServerSettings.h"

#include <array>

#include "login/ConfigurationFile.h"
#include "server/SettingKeys.h"
#include "values/ManagerError.h"

namespace ZebManager {
namespace {

using Warn = std::function<void(const std::string&)>;

struct Say {
  const std::string& file;
  const Warn& warn;

  std::string line(const toml::node& node, const std::string& what) const {
    return file + ":" + std::to_string(node.source().begin.line) + ": " + what;
  }
};

/// What nobody may be mistaken about: where the server can be reached, and by whom.
bool isVital(const std::string& section) {
  return section == "listen" || section == "access";
}

/// `say` names file and line; so does what is thrown.
void takeSection(ServerSettings& settings, const std::string& section, const toml::table& content,
                 const Say& say) {
  for (const auto& [name, value] : content) {
    const std::string key = section + "." + std::string(name.str());
    const TakenKey taken = takeKey(settings, key, value);
    if (taken.state == KeyState::Taken) continue;
    const std::string wrong = taken.state == KeyState::Unknown
                                  ? "'" + key + "' is unknown"
                                  : "'" + key + "' has a bad value: expected " + taken.expected;
    if (isVital(section)) throw ManagerError(say.line(value, wrong));
    say.warn(say.line(value, taken.state == KeyState::Unknown ? wrong : wrong + "; the default holds"));
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
  const auto require = [&](bool given, const char* what, bool other, const char* without) {
    if (given && !other) {
      throw ManagerError(file + ": '" + what + "' is of no use without '" + without + "'");
    }
  };
  const bool authority = !settings.clientAuthority.empty();
  const bool users = !settings.certificateUsers.empty();
  require(!settings.key.empty(), "listen.key", !settings.certificate.empty(), "listen.certificate");
  require(authority, "listen.client-ca", users, "access.certificates");
  require(users, "access.certificates", authority, "listen.client-ca");
}

}  // namespace

ServerSettings readServerSettings(const std::string& file, bool mayLack, const Warn& warn) {
  ServerSettings settings;
  const toml::table tables = readConfiguration(file, mayLack);
  const Say say{file, warn};
  for (const auto& [section, content] : tables) {
    const std::string name(section.str());
    if (content.is_table()) {
      takeSection(settings, name, *content.as_table(), say);
    } else if (isVital(name)) {
      throw ManagerError(say.line(content, "'" + name + "' has to be a section"));
    } else {
      warn(say.line(content, "'" + name + "' is unknown"));
    }
  }
  checkTogether(settings, file, warn);
  return settings;
}

}  // namespace ZebManager
