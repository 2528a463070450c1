#include "cli/Explainer.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <set>

#include "broker/Broker.h"
#include "cli/InterfaceNames.h"
#include "cli/JsonOutput.h"
#include "cli/ProgramOutput.h"
#include "cli/ShortNames.h"
#include "values/CallMemory.h"
#include "values/ObjectPathText.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

using Json = nlohmann::ordered_json;
using Change = AlteredRecording::Change;
using Range = AlteredRecording::Range;

std::vector<RecordedFact> readFacts() {
  std::vector<RecordedFact> facts;
  for (const Json& one : Json::parse(outputOf("zeb-capture", {"--facts"}))) {
    const auto text = [&](const char* key) { return one[key].is_null() ? "" : one[key].get<std::string>(); };
    facts.push_back({one["key"], one["values"].get<std::vector<Json>>(), text("from"), text("otherwise")});
  }
  return facts;
}

/// What is tried must not reach anybody's settings.
Options optionsFor(const Options& options, const std::string& file, const ZEB::TemporaryFolder& folder) {
  setenv("ZEB_STORE_DIR", (folder / "store").c_str(), 1);
  setenv("ZEB_RUN_DIR", (folder / "run").c_str(), 1);
  Options own = options;
  own.source = file;
  return own;
}

bool hasKnown(const std::vector<Reason>& reasons) {
  return std::ranges::any_of(reasons, [](const Reason& reason) { return !reason.value.is_null(); });
}

const ClassDef& classOf(const Session& session, const std::string& path) {
  Arena arena;
  return requireClass(session.repository(),
                      parsePath(arena, session.repository(), kNameSpace, path)->body().className);
}

/// So that every pass of the worker looks, however soon it follows another.
void pollAlways(Session& session, Arena& arena) {
  constexpr char kInterval[] = "PollInterval";
  const ObjectPath& path =
      *parsePath(arena, session.repository(), kNameSpace, "ZEB_EthEventSettings.InstanceId=\"JXV:0\"");
  Instance& settings = *makeInstance(arena, path, classOf(session, formatPath(path.body())));
  CMPIValue none{};
  settings.ft->setProperty(&settings, kInterval, &none, CMPI_uint32);
  const std::array<const char*, 2> names = {kInterval, nullptr};
  session.provider().modifyInstance(path, settings, names.data());
}

}  // namespace

Explainer::Explainer(const Options& options, const std::string& recording)
    : _facts(readFacts()),
      _recording(recording, _folder / "recording.json"),
      _options(optionsFor(options, _recording.file(), _folder)),
      _session(_options) {}

std::optional<Explainer::Values> Explainer::read() {
  Arena arena;
  const ObjectPath& path = *parsePath(arena, _session.repository(), kNameSpace, _path);
  const Reply reply = _session.model().getInstance(path, nullptr);
  if (reply.code != CMPI_RC_OK || reply.items().empty()) return std::nullopt;
  const Instance& instance = *as<Instance>(reply.items()[0].value.inst);
  const Json json = Json::parse(jsonLineOfInstance(instance, JsonForm::Plain));
  Values values;
  _order.clear();
  for (const auto& [name, value] : json["properties"].items()) {
    values[name] = value;
    _order.push_back(name);
  }
  return values;
}

std::string Explainer::nameNow() {
  return InterfaceNames::has(_session.repository(), classOf(_session, _path).name)
             ? InterfaceNames(_session.model()).nameOf(_path)
             : "";
}

Explainer::Changed Explainer::changedBy(const RecordedFact& fact, Change change, Range range) {
  if (!_recording.alter(fact, change, range)) return {};
  _session.restart();
  std::optional<Values> altered;
  try {
    // Where the numbers of instances moved, the path stands for another.
    if (nameNow() == _name) altered = read();
  } catch (const ManagerError&) {
    // Without that fact there is no such machine.
  }
  Changed changed;
  if (!altered) return changed;
  for (const auto& [name, value] : *altered) {
    const auto before = _values.find(name);
    if (before == _values.end() || before->second != value) changed.push_back(name);
  }
  for (const auto& [name, value] : _values) {
    if (!altered->contains(name)) changed.push_back(name);
  }
  return changed;
}

Explanation& Explainer::of(const std::string& property) {
  Explanation& explanation = _explanations[property];
  explanation.property = property;
  return explanation;
}

/// Narrows the elements down to one whose fact makes the difference.
Reason Explainer::reasonOf(const RecordedFact& fact, Change change, const std::string& property) {
  Range range{0, _recording.countOf(fact)};
  while (range.end - range.begin > 1) {
    const Range half{range.begin, range.begin + (range.end - range.begin) / 2};
    const bool inHalf = std::ranges::count(changedBy(fact, change, half), property) > 0;
    range = inHalf ? half : Range{half.end, range.end};
  }
  return {&fact, _recording.interfaceOf(fact, range.begin), _recording.valueOf(fact, range.begin)};
}

void Explainer::tryFact(const RecordedFact& fact) {
  for (const Change change : {Change::Other, Change::Gone, Change::There}) {
    std::optional<Reason> reason;  // properties that a fact changes at once have it of the same interface
    for (const std::string& property : changedBy(fact, change, {})) {
      auto& reasons = of(property).reasons;
      if (std::ranges::any_of(reasons, [&](const Reason& known) { return known.fact == &fact; })) continue;
      if (!reason) reason = reasonOf(fact, change, property);
      reasons.push_back(*reason);
    }
  }
}

/// What is another though the facts are the same again.
void Explainer::findMemory() {
  constexpr char kWorkerMethod[] = "PerformWork";
  _recording.restore();
  _session.restart();
  Arena arena;
  const ArenaScope scope(arena);
  const ObjectPath& worker = *makePath(arena, kNameSpace, "ZEB_AutoStartEthernetPort");
  const auto work = [&] {
    read();
    _session.provider().invokeMethod(worker, kWorkerMethod, *makeArgs(arena), *makeArgs(arena));
  };
  pollAlways(_session, arena);
  work();
  _recording.switchLinks();
  work();
  _recording.restore();
  const auto now = read();
  for (const auto& [name, value] : now ? *now : Values()) {
    if (_values[name] != value && of(name).reasons.empty()) of(name).source = Source::Remembered;
  }
}

/// What is another for a twin of whatever the instance stands for.
void Explainer::findPlace() {
  _recording.twin();
  _session.restart();
  const Reply reply = _session.model().enumerateInstances(classOf(_session, _path).name, nullptr);
  std::map<std::string, std::set<Json>> values;
  for (const CMPIData& item : reply.items()) {
    const Json json = Json::parse(jsonLineOfInstance(*as<Instance>(item.value.inst), JsonForm::Plain));
    for (const auto& [name, value] : json["properties"].items()) values[name].insert(value);
  }
  for (auto& [name, explanation] : _explanations) {
    if (values[name].size() > 1 && explanation.source == Source::Constant && !hasKnown(explanation.reasons))
      explanation.source = Source::Place;
  }
}

void Explainer::classify() {
  const ClassDef& classDef = classOf(_session, _path);
  for (auto& [name, explanation] : _explanations) {
    const PropertyDef* const def = classDef.property(name);
    const auto value = _values.find(name);
    if (value != _values.end()) explanation.value = value->second;
    std::ranges::stable_sort(explanation.reasons, {},
                             [](const Reason& reason) { return reason.value.is_null(); });
    if (def && def->type == CMPI_ref) {
      explanation.source = Source::End;
    } else if (def && def->key) {
      explanation.source = Source::Key;
    } else if (def && def->writable) {
      explanation.source = Source::Setting;
    } else if (hasKnown(explanation.reasons)) {
      explanation.source = Source::Facts;
    } else if (!explanation.reasons.empty() && explanation.source == Source::Constant) {
      explanation.source = Source::Fallback;
    }
  }
}

std::vector<Explanation> Explainer::explain(const std::string& word) {
  Arena arena;
  _path = formatPath(instanceMeant(_session, arena, word).body());
  const auto values = read();
  if (!values) throw ManagerError("path '" + _path + "': there is no such instance");
  _values = *values;
  _name = nameNow();
  const std::vector<std::string> served = _order;
  for (const std::string& name : served) of(name);
  for (const RecordedFact& fact : _facts) tryFact(fact);
  findMemory();
  findPlace();
  classify();
  std::vector<Explanation> explained;
  for (const std::string& name : served) explained.push_back(_explanations[name]);
  for (const auto& [name, explanation] : _explanations) {
    if (!_values.contains(name)) explained.push_back(explanation);
  }
  return explained;
}

}  // namespace ZebManager
