#include "cli/Explain.h"

#include <ostream>

#include "cli/Explainer.h"
#include "cli/Nearest.h"
#include "cli/Printable.h"
#include "cli/Recording.h"
#include "cli/Words.h"
#include "local/RunFolder.h"
#include "schema/Caseless.h"

namespace ZebManager {
namespace {

using Json = nlohmann::ordered_json;

struct SourceText {
  const char* name;
  const char* words;  ///< before the reasons
};

const SourceText& textOf(Source source) {
  static constexpr SourceText kTexts[] = {
      {"facts", "from what the kernel says"},
      {"fallback", "the kernel does not say what it would come from"},
      {"key", "what the instance is named by"},
      {"end", "an end of the association"},
      {"setting", "as it was set; clients may change it"},
      {"remembered", "what the plug-in has seen before, whatever the kernel says now"},
      {"place", "which of its kind the instance is, in the order in which the machine has them"},
      {"constant", "always the same"},
  };
  return kTexts[static_cast<std::size_t>(source)];
}

/// What other commands show is explained: of a service, what that serves.
std::string servedRecording(const Session& session) {
  const auto service = session.service();
  const std::string recording = service ? service->recording() : configuredRecording();
  if (!recording.empty()) requireReadable(recording);
  return recording;
}

std::string plain(const Json& value) {
  return value.is_string() ? value.get<std::string>()
                           : value.dump(-1, ' ', false, Json::error_handler_t::replace);
}

std::string lineOf(const Reason& reason) {
  std::string line = reason.fact->key;
  if (!reason.interface.empty()) line += " of " + reason.interface;
  line += reason.value.is_null() ? " is not known" : " is " + plain(reason.value);
  line += "; " + reason.fact->from;
  if (!reason.fact->otherwise.empty()) line += ", else " + reason.fact->otherwise;
  return line;
}

void print(const std::vector<Explanation>& all, const Output& output) {
  for (const Explanation& one : all) {
    const std::string value = one.source == Source::Setting ? ""
                              : one.value.is_null()         ? "is left out"
                                                            : "= " + plain(one.value);
    output.out << toned(one.property, Tone::Strong, output.colour) << " " << printable(value) << "\n    "
               << textOf(one.source).words << "\n";
    for (const Reason& reason : one.reasons) {
      if (one.source != Source::Key && one.source != Source::End)
        output.out << "    " << printable(lineOf(reason)) << "\n";
    }
  }
}

Json jsonOf(const Explanation& one) {
  Json reasons = Json::array();
  for (const Reason& reason : one.reasons) {
    reasons.push_back(
        {{"fact", reason.fact->key},
         {"interface", reason.interface.empty() ? Json(nullptr) : Json(reason.interface)},
         {"value", reason.value},
         {"from", reason.fact->from},
         {"otherwise", reason.fact->otherwise.empty() ? Json(nullptr) : Json(reason.fact->otherwise)}});
  }
  return {{"property", one.property},
          {"value", one.source == Source::Setting ? Json(nullptr) : one.value},
          {"source", textOf(one.source).name},
          {"words", textOf(one.source).words},
          {"facts", reasons}};
}

}  // namespace

void explain(const Options& options, Session& session, const Output& output) {
  Options served = options;
  if (served.source.empty()) served.source = servedRecording(session);
  Explainer explainer(served, recordingOf(served));
  std::vector<Explanation> all = explainer.explain(options.path);
  if (!options.property.empty()) {
    std::vector<std::string> known;
    for (const Explanation& one : all) known.push_back(one.property);
    std::erase_if(all, [&](const Explanation& one) { return !sameName(one.property, options.property); });
    if (all.empty()) {
      throw ManagerError(explainer.path() + " has no property '" + options.property + "'" +
                         suggestion(options.property, known));
    }
  }
  if (!options.json) return print(all, output);
  Json properties = Json::array();
  for (const Explanation& one : all) properties.push_back(jsonOf(one));
  output.out << Json({{"path", explainer.path()}, {"properties", properties}})
                    .dump(2, ' ', false, Json::error_handler_t::replace)
             << "\n";
}

}  // namespace ZebManager
