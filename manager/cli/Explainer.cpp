#include "cli/Explainer.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <set>

#include "broker/Broker.h"
#include "cli/InterfaceNames.h"
#include "cli/NearLinks.h"
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

constexpr std::array kChanges = {Change::Other, Change::Gone, Change::There};
constexpr std::size_t kFewInterfaces = 16;
constexpr std::size_t kMore = 4;

std::vector<RecordedFact> readFacts() {
  std::vector<RecordedFact> facts;
  for (const Json& one : Json::parse(outputOf("zeb-capture", {"--facts"}))) {
    const auto text = [&](const char* key) { return one[key].is_null() ? "" : one[key].get<std::string>(); };
    facts.push_back({one["key"], one["values"].get<std::vector<Json>>(), text("from"), text("otherwise")});
  }
  return facts;
}

/// What is tried must not reach anybody's settings or log.
Options optionsFor(const Options& options, const std::string& file, const ZEB::TemporaryFolder& folder) {
  setenv("ZEB_STORE_DIR", (folder / "store").c_str(), 1);
  setenv("ZEB_RUN_DIR", (folder / "run").c_str(), 1);
  setenv("ZEB_LOG_TARGET", "none", 1);
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

std::optional<InstanceValues> Explainer::read() {
  return readValues(_session.model(), _path);
}

std::string Explainer::nameNow() {
  Arena arena;
  return interfaceName(_session.model(), *parsePath(arena, _session.repository(), kNameSpace, _path));
}

/// What the recording is now; nothing where there is no such instance.
std::optional<InstanceValues> Explainer::readAltered() {
  try {
    _session.restartProvider();
    // Where the numbers of instances moved, the path stands for another.
    if (nameNow() != _name) return std::nullopt;
    const auto values = read();
    return values ? values : readSuccessor();
  } catch (const ManagerError&) {
    return std::nullopt;  // without that fact there is no such machine
  }
}

/// What is named by the fact that was altered is called something else now, and is in the same place.
std::optional<InstanceValues> Explainer::readSuccessor() {
  const std::vector<std::string> now = pathsBeside(_session.model(), _path);
  const auto place = std::ranges::find(_beside, _path) - _beside.begin();
  if (now.size() != _beside.size() || place == std::ssize(_beside)) return std::nullopt;
  return readValues(_session.model(), now[static_cast<std::size_t>(place)]);
}

Explainer::Changed Explainer::changedIn(const InstanceValues& altered) const {
  Changed changed;
  for (const auto& [name, value] : altered.items()) {
    if (!_values.contains(name) || _values[name] != value) changed.push_back(name);
  }
  for (const auto& [name, value] : _values.items()) {
    if (!altered.contains(name)) changed.push_back(name);
  }
  return changed;
}

Explainer::Changed Explainer::changedBy(const RecordedFact& fact, Change change, Range range) {
  if (!_recording.alter(fact, change, range)) return {};
  const auto altered = readAltered();
  return altered ? changedIn(*altered) : Changed();
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
  for (const Change change : kChanges) {
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
  _session.restartProvider();
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
  const InstanceValues now = read().value_or(Json::object());
  for (const auto& [name, value] : now.items()) {
    if (_values[name] != value && of(name).reasons.empty()) of(name).source = Source::Remembered;
  }
}

/// What is another for a twin of whatever the instance stands for.
void Explainer::findPlace() {
  _recording.twin();
  _session.restartProvider();
  const Reply reply = _session.model().enumerateInstances(classOf(_session, _path).name, nullptr);
  std::map<std::string, std::set<Json>> values;
  for (const CMPIData& item : reply.items()) {
    const InstanceValues one = valuesOf(*as<Instance>(item.value.inst));
    for (const auto& [name, value] : one.items()) values[name].insert(value);
  }
  for (auto& [name, explanation] : _explanations) {
    if (values[name].size() > 1 && explanation.source == Source::Constant && !hasKnown(explanation.reasons))
      explanation.source = Source::Place;
  }
}

void Explainer::classify(const InstanceValues& served) {
  const ClassDef& classDef = classOf(_session, _path);
  for (auto& [name, explanation] : _explanations) {
    const PropertyDef* const def = classDef.property(name);
    if (served.contains(name)) explanation.value = served[name];
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

/// False where the instance needs nearly all of the machine.
bool Explainer::narrow(const Likeness& likeness) {
  for (std::size_t most = kFewInterfaces; _recording.cut(likeness.interfaces, most); most *= kMore) {
    _session.restartProvider();
    const auto there = likeness.findIn(_session.model());
    if (!there) continue;
    _path = *there;
    _values = *read();
    return true;
  }
  return false;
}

void Explainer::widen() {
  _recording.cut({}, 0);
  _session.restartProvider();
  _path = _asked;
  _values = *read();
}

/// Whether the facts that the instance depends on make a difference to it where they were left out.
bool Explainer::dependsOnOthers(const Likeness& likeness) {
  std::set<const RecordedFact*> facts;
  for (const auto& [name, explanation] : _explanations) {
    for (const Reason& reason : explanation.reasons) {
      if (!isReference(reason.fact->key)) facts.insert(reason.fact);
    }
  }
  return std::ranges::any_of(kChanges,
                             [&](Change change) { return leftOutMatters(facts, change, likeness); });
}

bool Explainer::leftOutMatters(const std::set<const RecordedFact*>& facts, Change change,
                               const Likeness& likeness) {
  try {
    _recording.alterLeftOut(facts, change);
    _session.restartProvider();
    return !likeness.isAt(_session.model(), _asked) && !likeness.findIn(_session.model());
  } catch (const ManagerError&) {
    // There is no such machine; there may be one with some of the changes.
    return facts.size() > 1 && std::ranges::any_of(facts, [&](const RecordedFact* fact) {
             return leftOutMatters({fact}, change, likeness);
           });
  }
}

void Explainer::tryAll() {
  _explanations.clear();
  _recording.restore();
  _session.restartProvider();
  _beside = pathsBeside(_session.model(), _path);
  for (const auto& [name, value] : _values.items()) of(name);
  for (const RecordedFact& fact : _facts) tryFact(fact);
}

std::vector<Explanation> Explainer::explain(const std::string& word) {
  Arena arena;
  _path = _asked = formatPath(instanceMeant(_session, arena, word).body());
  const auto values = read();
  if (!values) throw ManagerError("path '" + _path + "': there is no such instance");
  _values = *values;
  _name = nameNow();
  const Likeness likeness = Likeness::of(_session.model(), _path, _values);
  const bool narrowed = narrow(likeness);
  tryAll();
  if (narrowed && dependsOnOthers(likeness)) {
    widen();
    tryAll();
  }
  findMemory();
  findPlace();
  classify(*values);
  std::vector<Explanation> explained;
  for (const auto& [name, value] : values->items()) explained.push_back(_explanations[name]);
  for (const auto& [name, explanation] : _explanations) {
    if (!values->contains(name)) explained.push_back(explanation);
  }
  return explained;
}

}  // namespace ZebManager
