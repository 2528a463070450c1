// Why properties have the values that they have.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cli/AlteredRecording.h"
#include "cli/Likeness.h"
#include "cli/Session.h"

namespace ZebManager {

/// What a property's value comes from.
enum class Source {
  Facts,       ///< what the kernel says
  Fallback,    ///< what stands in for that, or its absence: the kernel does not say it
  Key,         ///< what the instance is named by
  End,         ///< an end of an association
  Setting,     ///< what clients have set
  Remembered,  ///< what the plug-in has seen before
  Place,       ///< which of its kind the instance is
  Constant     ///< the same whatever anybody says
};

/// A fact on which a value depends.
struct Reason {
  const RecordedFact* fact = nullptr;
  std::string interface;         ///< whose; empty where it is nobody's alone
  nlohmann::ordered_json value;  ///< null when it is not known
};

struct Explanation {
  std::string property;
  nlohmann::ordered_json value;  ///< null when there is none
  Source source = Source::Constant;
  std::vector<Reason> reasons;  ///< of facts and fallbacks, those that are known first
};

/// Finds out by trial: has the plug-in serve the same machine with one fact altered, and looks which
/// properties are others then. What is said of a property is so of the plug-in that is asked. Where there are
/// many interfaces, it tries on a machine that has no others than those that the instance has to do with, if
/// the instance is the same there and what is left out makes no difference to it.
class Explainer {
 public:
  /// `options`: with the plug-in and schema to use. `recording`: the text of one. Throws ManagerError.
  Explainer(const Options& options, const std::string& recording);

  /// Of every property of the instance that a word means. Throws ManagerError.
  std::vector<Explanation> explain(const std::string& word);
  /// The path of that instance.
  const std::string& path() const { return _asked; }

 private:
  using Json = nlohmann::ordered_json;
  using Changed = std::vector<std::string>;  ///< names of properties

  std::optional<InstanceValues> read();
  std::optional<InstanceValues> readAltered();
  std::optional<InstanceValues> readSuccessor();
  Changed changedIn(const InstanceValues& altered) const;
  Changed changedBy(const RecordedFact& fact, AlteredRecording::Change change, AlteredRecording::Range range);
  bool narrow(const Likeness& likeness);
  void widen();
  bool dependsOnOthers(const Likeness& likeness);
  bool leftOutMatters(const std::set<const RecordedFact*>& facts, AlteredRecording::Change change,
                      const Likeness& likeness);
  void tryAll();
  void tryFact(const RecordedFact& fact);
  Reason reasonOf(const RecordedFact& fact, AlteredRecording::Change change, const std::string& property);
  void findMemory();
  void findPlace();
  std::string nameNow();
  void classify(const InstanceValues& served);
  Explanation& of(const std::string& property);

  ZEB::TemporaryFolder _folder{"zebcim-explain"};
  std::vector<RecordedFact> _facts;
  AlteredRecording _recording;
  const Options _options;
  Session _session;
  std::string _asked;                ///< the path that is meant
  std::string _path;                 ///< the same on the machine on which is tried
  std::string _name;                 ///< of the interface that it stands for; may be empty
  std::vector<std::string> _beside;  ///< paths of its class there, unaltered
  InstanceValues _values;            ///< on the machine on which is tried
  std::map<std::string, Explanation> _explanations;
};

}  // namespace ZebManager
