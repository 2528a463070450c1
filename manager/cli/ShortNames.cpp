#include "cli/ShortNames.h"

#include <algorithm>
#include <array>

#include "cli/InterfaceNames.h"
#include "cli/Nearest.h"
#include "cli/TreeModel.h"
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

/// Letters and digits alone, so that "PCI slot 3" is "pcislot3" and an address is its digits.
std::string bare(std::string_view text) {
  std::string kept;
  for (const char c : text) {
    if (std::isalnum(static_cast<unsigned char>(c)) != 0) kept += foldCase(c);
  }
  return kept;
}

/// By what the tree shows: MAC addresses of ports and teams, places of cards.
std::vector<std::string> pathsInTree(const Tree& tree, const std::string& word) {
  const std::string wanted = bare(word);
  std::vector<std::string> found;
  const auto addInterface = [&](const TreeInterface& interface) {
    if (!wanted.empty() && bare(interface.macAddress) == wanted) found.push_back(interface.path);
  };
  for (const TreeCard& card : tree.cards) {
    const std::string place = bare(card.location);
    const bool slot = wanted.starts_with("slot") && place.ends_with(wanted);
    if (!place.empty() && (place == wanted || slot)) found.push_back(card.path);
    for (const TreePort& port : card.ports) addInterface(port);
  }
  for (const TreeTeam& team : tree.teams) addInterface(team);
  return found;
}

ObjectPath& only(Session& session, Arena& arena, const std::string& word,
                 const std::vector<std::string>& paths) {
  if (paths.size() != 1) throw ManagerError("'" + word + "' could be any of " + listed(paths));
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
  // What is left out is then named by the error.
  if (paths.empty()) return *parsePath(arena, session.repository(), kNameSpace, word);
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
  if (paths.empty() && session.repository().find("ZEB_EthernetPort")) {
    paths = pathsInTree(readTree(session.model()), word);
  }
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
