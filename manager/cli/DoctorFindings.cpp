#include "cli/DoctorFindings.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>

#include "cli/Printable.h"
#include "cli/Words.h"

namespace ZebManager {
namespace {

using Json = nlohmann::ordered_json;

struct StateRow {
  const char* shown;
  const char* name;
  Tone tone;
};

const StateRow& rowOf(DoctorFindings::State state) {
  static constexpr std::array kStates = {StateRow{"ok    ", "ok", Tone::Good},
                                         StateRow{"-     ", "note", Tone::Faint},
                                         StateRow{"FAILED", "failed", Tone::Bad}};
  return kStates[static_cast<std::size_t>(state)];
}

}  // namespace

bool DoctorFindings::healthy() const {
  return std::ranges::none_of(all, [](const Finding& finding) { return finding.state == State::Bad; });
}

std::string textOfFindings(const DoctorFindings& findings, bool colour) {
  constexpr std::size_t kWidth = sizeof "last pass" - 1;
  std::string out;
  for (const auto& finding : findings.all) {
    const StateRow& row = rowOf(finding.state);
    out += finding.what + std::string(kWidth - std::min(kWidth, finding.what.size()), ' ') + "  " +
           toned(row.shown, row.tone, colour) + "  " + printable(finding.text) + "\n";
  }
  return out;
}

std::string jsonOfFindings(const DoctorFindings& findings) {
  Json list = Json::array();
  for (const auto& finding : findings.all) {
    list.push_back({{"what", finding.what}, {"state", rowOf(finding.state).name}, {"text", finding.text}});
  }
  const Json json = {{"healthy", findings.healthy()},
                     {"findings", list},
                     {"report", findings.report.empty() ? Json(nullptr) : Json::parse(findings.report)},
                     {"reportAge", findings.reportAge ? Json(*findings.reportAge) : Json(nullptr)}};
  return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

}  // namespace ZebManager
