#include "server/SettingKeys.h"

#include <algorithm>
#include <array>
#include <map>
#include <utility>

#include "server/ListeningSocket.h"

namespace ZebManager {
namespace {

using std::chrono::milliseconds;
using std::chrono::seconds;

struct TextRow {
  std::string_view key;
  std::string& (*of)(ServerSettings&);
  bool (*fits)(const std::string&) = nullptr;
  const char* expected = "a text";
};

struct FlagRow {
  std::string_view key;
  bool& (*of)(ServerSettings&);
};

constexpr char kNames[] = "a list of texts that are not empty";

struct TextsRow {
  std::string_view key;
  /// False when they do not fit.
  bool (*set)(ServerSettings&, const std::vector<std::string>&);
  const char* expected = kNames;
};

struct NumberRow {
  std::string_view key;
  std::int64_t lowest, highest;
  void (*set)(ServerSettings&, std::int64_t);
};

bool isPlace(const std::string& text) {
  return isNowhere(text) || isListeningAddress(text);
}

bool isName(const std::string& text) {
  return !text.empty();
}

constexpr char kPlace[] = "an address and a port, or \"none\"";
constexpr char kName[] = "a text that is not empty";

constexpr std::array kTexts = {
    TextRow{"listen.http", [](ServerSettings& s) -> std::string& { return s.http; }, isPlace, kPlace},
    TextRow{"listen.https", [](ServerSettings& s) -> std::string& { return s.https; }, isPlace, kPlace},
    TextRow{"listen.certificate", [](ServerSettings& s) -> std::string& { return s.certificate; }},
    TextRow{"listen.key", [](ServerSettings& s) -> std::string& { return s.key; }},
    TextRow{"listen.client-ca", [](ServerSettings& s) -> std::string& { return s.clientAuthority; }},
    TextRow{"access.pam-service", [](ServerSettings& s) -> std::string& { return s.login.pamService; },
            isName, kName},
    TextRow{"access.pam-folder", [](ServerSettings& s) -> std::string& { return s.login.pamFolder; }},
    TextRow{"access.write-group", [](ServerSettings& s) -> std::string& { return s.login.writeGroup; }},
    TextRow{"state.directory", [](ServerSettings& s) -> std::string& { return s.stateDirectory; }, isName,
            kName},
    TextRow{"delivery.trusted-certificates",
            [](ServerSettings& s) -> std::string& { return s.delivery.trustedCertificates; }},
    TextRow{"alertmanager.trusted-certificates",
            [](ServerSettings& s) -> std::string& { return s.alertmanager.trustedCertificates; }},
    TextRow{"alertmanager.credentials",
            [](ServerSettings& s) -> std::string& { return s.alertmanager.credentials; }},
};

constexpr std::array kFlags = {
    FlagRow{"delivery.verify-listeners",
            [](ServerSettings& s) -> bool& { return s.delivery.verifyCertificates; }},
};

using Texts = std::vector<std::string>;

bool put(Texts& setting, const Texts& texts) {
  setting = texts;
  return true;
}

bool setUrls(ServerSettings& settings, const Texts& texts) {
  return std::ranges::all_of(texts, isAlertmanagerUrl) && put(settings.alertmanager.urls, texts);
}

bool setLabels(ServerSettings& settings, const Texts& texts) {
  std::map<std::string, std::string> labels;
  for (const std::string& text : texts) {
    std::pair<std::string, std::string> label;
    if (!readLabel(text, label) || !labels.insert(label).second) return false;
  }
  settings.alertmanager.labels = std::move(labels);
  return true;
}

constexpr std::array kLists = {
    TextsRow{"serve.aliases", [](ServerSettings& s, const Texts& texts) { return put(s.aliases, texts); }},
    TextsRow{"listen.names", [](ServerSettings& s, const Texts& texts) { return put(s.names, texts); }},
    TextsRow{"alertmanager.urls", setUrls, "a list of http or https URLs, without user, query and fragment"},
    TextsRow{"alertmanager.labels", setLabels,
             "a list of \"name=value\", each name once, none of them alertname, severity, interface or team"},
};

constexpr unsigned count(std::int64_t number) {
  return static_cast<unsigned>(number);
}

constexpr std::array kNumbers = {
    NumberRow{"limits.connections", 1, 10'000,
              [](ServerSettings& s, std::int64_t n) { s.connections = count(n); }},
    NumberRow{"limits.connections-per-address", 1, 10'000,
              [](ServerSettings& s, std::int64_t n) { s.connectionsPerAddress = count(n); }},
    NumberRow{"limits.request-bytes", 1024, 1 << 28,
              [](ServerSettings& s, std::int64_t n) { s.requestBytes = count(n); }},
    NumberRow{"limits.request-depth", 16, kDeepestOfAll,
              [](ServerSettings& s, std::int64_t n) { s.requestDepth = count(n); }},
    NumberRow{"limits.waiting-bytes", 1024, 1 << 30,
              [](ServerSettings& s, std::int64_t n) { s.waitingBytes = count(n); }},
    NumberRow{"limits.answer-bytes", 1024, 1 << 30,
              [](ServerSettings& s, std::int64_t n) { s.answerBytes = count(n); }},
    NumberRow{"limits.request-seconds", 1, 3600,
              [](ServerSettings& s, std::int64_t n) { s.requestTime = seconds(n); }},
    NumberRow{"limits.stop-seconds", 3, 3600,
              [](ServerSettings& s, std::int64_t n) { s.stopTime = seconds(n); }},
    NumberRow{"limits.call-seconds", 1, 3600,
              [](ServerSettings& s, std::int64_t n) { s.plugin.timeLimit = seconds(n); }},
    NumberRow{"limits.patience-milliseconds", 10, 3'600'000,
              [](ServerSettings& s, std::int64_t n) { s.plugin.patience = milliseconds(n); }},
    NumberRow{"limits.enumerations", 1, 100'000,
              [](ServerSettings& s, std::int64_t n) { s.pull.most = count(n); }},
    NumberRow{"limits.enumeration-bytes", 1024, 1 << 30,
              [](ServerSettings& s, std::int64_t n) { s.pull.bytes = count(n); }},
    NumberRow{"limits.enumeration-seconds", 1, 3600,
              [](ServerSettings& s, std::int64_t n) { s.pull.time = seconds(n); }},
    NumberRow{"plugin.calls", 1, 256, [](ServerSettings& s, std::int64_t n) { s.plugin.calls = count(n); }},
    NumberRow{"plugin.processes", 2, 64,
              [](ServerSettings& s, std::int64_t n) { s.plugin.processes = count(n); }},
    NumberRow{"plugin.start-seconds", 1, 3600,
              [](ServerSettings& s, std::int64_t n) { s.plugin.startLimit = seconds(n); }},
    NumberRow{"plugin.alert-patience-milliseconds", 10, 3'600'000,
              [](ServerSettings& s, std::int64_t n) { s.plugin.alertPatience = milliseconds(n); }},
    NumberRow{"plugin.first-pause-milliseconds", 1, 3'600'000,
              [](ServerSettings& s, std::int64_t n) { s.plugin.firstBackOff = milliseconds(n); }},
    NumberRow{"plugin.longest-pause-milliseconds", 1, 3'600'000,
              [](ServerSettings& s, std::int64_t n) { s.plugin.longestBackOff = milliseconds(n); }},
    NumberRow{"delivery.most-waiting", 1, 1'000'000,
              [](ServerSettings& s, std::int64_t n) { s.delivery.mostWaiting = count(n); }},
    NumberRow{"delivery.longest-wait-seconds", 1, 31'536'000,
              [](ServerSettings& s, std::int64_t n) { s.delivery.longestWait = seconds(n); }},
    NumberRow{"delivery.first-pause-milliseconds", 1, 3'600'000,
              [](ServerSettings& s, std::int64_t n) { s.delivery.firstPause = milliseconds(n); }},
    NumberRow{"delivery.longest-pause-milliseconds", 1, 3'600'000,
              [](ServerSettings& s, std::int64_t n) { s.delivery.longestPause = milliseconds(n); }},
    NumberRow{"delivery.connect-seconds", 1, 3600,
              [](ServerSettings& s, std::int64_t n) { s.delivery.connectTimeout = seconds(n); }},
    NumberRow{"delivery.answer-seconds", 1, 3600,
              [](ServerSettings& s, std::int64_t n) { s.delivery.answerTimeout = seconds(n); }},
    NumberRow{"delivery.most-refusals", 1, 1000,
              [](ServerSettings& s, std::int64_t n) { s.delivery.mostRefusals = count(n); }},
    NumberRow{"alertmanager.resend-seconds", 1, 3600,
              [](ServerSettings& s, std::int64_t n) { s.alertmanager.resend = seconds(n); }},
};

template <class Rows>
auto rowOf(const Rows& rows, std::string_view key) {
  const auto found = std::find_if(rows.begin(), rows.end(), [&](const auto& row) { return row.key == key; });
  return found == rows.end() ? nullptr : &*found;
}

TakenKey take(ServerSettings& settings, const TextRow& row, const toml::node& value) {
  const auto text = value.value_exact<std::string>();
  if (!text || (row.fits && !row.fits(*text))) return {KeyState::Bad, row.expected};
  row.of(settings) = *text;
  return {KeyState::Taken, {}};
}

TakenKey take(ServerSettings& settings, const TextsRow& row, const toml::node& value) {
  TakenKey bad{KeyState::Bad, row.expected};
  if (!value.is_array()) return bad;
  std::vector<std::string> texts;
  for (const toml::node& element : *value.as_array()) {
    const auto text = element.value_exact<std::string>();
    if (!text || text->empty()) return bad;
    texts.push_back(*text);
  }
  if (!row.set(settings, texts)) return bad;
  return {KeyState::Taken, {}};
}

/// Names in certificates, each with the user whom it signs in.
TakenKey takeUsers(ServerSettings& settings, const toml::node& value) {
  const TakenKey bad{KeyState::Bad, "names, and a user for each"};
  if (!value.is_table()) return bad;
  CertificateUsers users;
  for (const auto& [name, user] : *value.as_table()) {
    const auto text = user.value_exact<std::string>();
    if (name.str().empty() || !text || text->empty()) return bad;
    users.emplace(name.str(), *text);
  }
  settings.certificateUsers = std::move(users);
  return {KeyState::Taken, {}};
}

TakenKey take(ServerSettings& settings, const FlagRow& row, const toml::node& value) {
  const auto flag = value.value_exact<bool>();
  if (!flag) return {KeyState::Bad, "true or false"};
  row.of(settings) = *flag;
  return {KeyState::Taken, {}};
}

TakenKey take(ServerSettings& settings, const NumberRow& row, const toml::node& value) {
  const auto number = value.value_exact<std::int64_t>();
  if (!number || *number < row.lowest || *number > row.highest) {
    return {KeyState::Bad,
            "a whole number from " + std::to_string(row.lowest) + " to " + std::to_string(row.highest)};
  }
  row.set(settings, *number);
  return {KeyState::Taken, {}};
}

}  // namespace

TakenKey takeKey(ServerSettings& settings, std::string_view key, const toml::node& value) {
  if (const auto* const text = rowOf(kTexts, key)) return take(settings, *text, value);
  if (const auto* const texts = rowOf(kLists, key)) return take(settings, *texts, value);
  if (const auto* const flag = rowOf(kFlags, key)) return take(settings, *flag, value);
  if (const auto* const number = rowOf(kNumbers, key)) return take(settings, *number, value);
  if (key == "access.certificates") return takeUsers(settings, value);
  return {KeyState::Unknown, {}};
}

}  // namespace ZebManager
