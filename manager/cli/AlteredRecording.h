// A recording of which one fact at a time is another.
#pragma once

#include <filesystem>
#include <nlohmann/json.hpp>
#include <optional>
#include <set>
#include <string>
#include <vector>

namespace ZebManager {

/// Something that a recording can say of an interface, an address, a route or a rule.
struct RecordedFact {
  using Json = nlohmann::ordered_json;

  std::string key;           ///< in the recording: "links.ethtool.speed"
  std::vector<Json> values;  ///< two that it might have
  std::string from;          ///< where the kernel says it
  std::string otherwise;     ///< where it is taken when that does not; may be empty
};

/// The first moment of a recording, in a file that is written anew for each change.
class AlteredRecording {
 public:
  using Json = nlohmann::ordered_json;
  /// Of the list that a fact is in; the end is left out.
  struct Range {
    std::size_t begin = 0;
    std::size_t end = static_cast<std::size_t>(-1);
  };
  enum class Change { Other, Gone, There };  ///< another value, none any more, one where there was none

  /// Throws ManagerError when the text is no recording.
  AlteredRecording(const std::string& text, std::filesystem::path file);

  const std::string& file() const { return _file.native(); }
  /// As it was recorded.
  void restore() { write(_recording); }
  /// From now on it has no other interfaces than so many that have to do with these; all with `most` 0. False
  /// where hardly any would be left out; then it has all.
  bool cut(const std::set<std::string>& names, std::size_t most);
  /// As it was recorded, but for what has been left out: there all of the facts are changed.
  void alterLeftOut(const std::set<const RecordedFact*>& facts, Change change);
  /// False when the change would change nothing; then nothing is written.
  bool alter(const RecordedFact& fact, Change change, Range range);
  /// Every link gets a carrier or loses it.
  void switchLinks();
  /// Every card, team and VLAN is there twice.
  void twin();

  /// How many there are where the fact is.
  std::size_t countOf(const RecordedFact& fact) const;
  /// The name of the interface that an element is about; empty when it is about none.
  std::string interfaceOf(const RecordedFact& fact, std::size_t element) const;
  /// What an element says; null when it does not.
  Json valueOf(const RecordedFact& fact, std::size_t element) const;

 private:
  void write(const Json& recording) const;

  const Json _whole;
  Json _recording;
  const std::filesystem::path _file;
};

}  // namespace ZebManager
