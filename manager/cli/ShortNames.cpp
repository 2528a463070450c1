#include "cli/ShortNames.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <utility>

#include "cli/InterfaceNames.h"
#include "cli/Nearest.h"
#include "cli/Places.h"
#include "values/ObjectPathText.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

struct ClassWord {
  const char* word;
  const char* className;
};

constexpr std::array kClassWords = {
    ClassWord{"ports", "ZEB_EthernetPort"},
    ClassWord{"cards", "ZEB_EthernetPortController"},
    ClassWord{"adapters", "ZEB_EthernetPortController"},
    ClassWord{"teams", "ZEB_EthernetTeam"},
    ClassWord{"bonds", "ZEB_EthernetTeam"},
    ClassWord{"members", "ZEB_EthernetTeamMember"},
    ClassWord{"endpoints", "ZEB_EthernetLANEndpoint"},
    ClassWord{"addresses", "ZEB_IPProtocolEndpoint"},
    ClassWord{"gateways", "ZEB_EthernetRemoteServiceAccessPoint"},
    ClassWord{"statistics", "ZEB_EthernetStatistics"},
    ClassWord{"settings", "ZEB_EthEventSettings"},
    ClassWord{"system", "ZEB_ComputerSystem"},
};

/// The keys in which several paths differ, which is enough to tell one from the others.
std::vector<std::string> differences(Session& session, const std::vector<std::string>& paths) {
  Arena arena;
  std::vector<const PathBody*> bodies;
  std::map<std::string_view, std::set<std::string>> values;
  for (const std::string& path : paths) {
    bodies.push_back(&parsePath(arena, session.repository(), kNameSpace, path)->body());
    for (const NamedValue& key : bodies.back()->keys) values[key.name].insert(formatKeyValue(key.data));
  }
  std::vector<std::string> texts;
  for (const PathBody* const body : bodies) {
    std::string text(body->className);
    char before = '.';
    for (const NamedValue& key : body->keys) {
      if (values[key.name].size() == 1) continue;
      text += std::exchange(before, ',') + std::string(key.name) + "=" + formatKeyValue(key.data);
    }
    texts.push_back(std::move(text));
  }
  return texts;
}

/// What can be written for each of them.
std::vector<std::string> choices(Session& session, const std::vector<std::string>& paths) {
  const InterfaceNames names(session.model());
  std::vector<std::string> texts = differences(session, paths);
  for (std::size_t i = 0; i < paths.size(); ++i) {
    const std::string& name = names.nameOf(paths[i]);
    if (names.pathsOf(name) == std::vector{paths[i]}) texts[i] = name;
  }
  return texts;
}

ObjectPath& only(Session& session, Arena& arena, const std::string& word,
                 const std::vector<std::string>& paths) {
  if (paths.size() != 1)
    throw ManagerError("'" + word + "' could be any of " + listed(choices(session, paths)));
  return *parsePath(arena, session.repository(), kNameSpace, paths.front());
}

std::vector<std::string> pathsOfClass(Session& session, const ClassDef& classDef) {
  const Reply reply = session.model().enumerateInstanceNames(classDef.name).orThrow();
  std::vector<std::string> paths;
  for (const CMPIData& item : reply.items()) {
    if (const ObjectPath* const path = as<ObjectPath>(item.value.ref))
      paths.push_back(formatPath(path->body()));
  }
  return paths;
}

bool agrees(const PathBody& given, const PathBody& whole) {
  return std::ranges::all_of(given.keys, [&](const NamedValue& key) {
    const NamedValue* const other = whole.keys.find(key.name);
    return other && formatKeyValue(other->data) == formatKeyValue(key.data);
  });
}

/// The one instance that has the keys that are given.
ObjectPath& completed(Session& session, Arena& arena, const std::string& word, const ObjectPath& given) {
  const ClassDef& classDef = requireClass(session.repository(), given.body().className);
  std::vector<std::string> paths;
  for (const std::string& path : pathsOfClass(session, classDef)) {
    if (agrees(given.body(), parsePath(arena, session.repository(), kNameSpace, path)->body()))
      paths.push_back(path);
  }
  if (paths.empty()) {
    std::vector<std::string> keys;
    for (const PropertyDef* const key : classDef.keys()) keys.push_back(key->name);
    throw ManagerError("no " + classDef.name + " is '" + word + "'; its keys are " + listed(keys));
  }
  return only(session, arena, word, paths);
}

/// The path as it has to be typed, when the shell has taken the quotes from around the values.
void refuseEatenQuotes(const std::string& word) {
  if (word.find('"') != std::string::npos) return;
  std::string quoted;
  for (std::size_t at = 0; at < word.size();) {
    const std::size_t equals = word.find('=', at);
    const std::size_t comma = std::min(word.find(',', at), word.size());
    if (equals > comma) return;
    const std::string value = word.substr(equals + 1, comma - equals - 1);
    const bool plain = value == "TRUE" || value == "FALSE" ||
                       (!value.empty() && value.find_first_not_of("0123456789") == std::string::npos);
    quoted += word.substr(at, equals + 1 - at);
    quoted += plain ? value : "\"" + value + "\"";
    if (comma < word.size()) quoted += ',';
    at = comma + 1;
  }
  if (quoted == word) return;
  throw ManagerError("the shell has taken the quotes out of " + word + ": write '" + quoted + "'");
}

/// What the service takes for the thing of that name, if it is called so; null when it has to be looked for.
ObjectPath* byHint(Session& session, Arena& arena, const std::string& word) {
  for (const bool again : {false, true}) {
    const std::string hint = session.hintOf(word, again);
    if (hint.empty()) return nullptr;
    ObjectPath& path = *parsePath(arena, session.repository(), kNameSpace, hint);
    if (interfaceName(session.model(), path) == word) return &path;
  }
  return nullptr;
}

ObjectPath& byName(Session& session, Arena& arena, const std::string& word) {
  if (ObjectPath* const hinted = byHint(session, arena, word)) return *hinted;
  const InterfaceNames names(session.model());
  std::vector<std::string> paths = names.pathsOf(word);
  if (paths.empty()) paths = pathsAt(session.model(), word);
  if (!paths.empty()) return only(session, arena, word, paths);
  throw ManagerError("nothing is called '" + word + "'" + suggestion(word, names.all()) +
                     (names.all().empty() ? "" : "; there are " + listed(names.all())));
}

const ClassDef* classCalled(const ClassRepository& repository, const std::string& word) {
  if (const ClassDef* const named = repository.find(word)) return named;
  for (const ClassWord& row : kClassWords) {
    if (sameName(row.word, word)) return repository.find(row.className);
  }
  return repository.find("ZEB_" + word);
}

}  // namespace

ObjectPath& instanceMeant(Session& session, Arena& arena, const std::string& word) {
  const ClassRepository& repository = session.repository();
  if (word.find('=') != std::string::npos) {
    refuseEatenQuotes(word);
    ObjectPath& given = *parsePath(arena, repository, kNameSpace, word, KeysGiven::Some);
    const bool whole =
        given.body().keys.count == requireClass(repository, given.body().className).keys().size();
    return whole ? given : completed(session, arena, word, given);
  }
  if (const ClassDef* const classDef = classCalled(repository, word)) {
    const std::vector<std::string> paths = pathsOfClass(session, *classDef);
    if (paths.empty()) throw ManagerError(classDef->name + " has no instances");
    return only(session, arena, word, paths);
  }
  if (word.find(':') != std::string::npos && word.find('/') != std::string::npos) {
    return *parsePath(arena, repository, kNameSpace, word);  // says what is wrong with it
  }
  return byName(session, arena, word);
}

const ClassDef& classMeant(const ClassRepository& repository, const std::string& word) {
  if (const ClassDef* const found = classCalled(repository, word)) return *found;
  throw ManagerError("unknown class '" + word + "': expected one that 'zebcim classes' lists" +
                     suggestion(word, classWords(repository)));
}

std::vector<std::string> classWords(const ClassRepository& repository) {
  std::vector<std::string> words;
  for (const ClassWord& row : kClassWords) {
    if (repository.find(row.className)) words.emplace_back(row.word);
  }
  for (const auto& def : repository.classes()) words.push_back(def->name);
  return words;
}

std::vector<std::string> instanceWords(Namespace& model) {
  return InterfaceNames(model).all();
}

}  // namespace ZebManager
