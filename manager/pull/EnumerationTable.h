// The enumerations that are open.
#pragma once

#include <chrono>
#include <deque>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "cimxml/EnumerationSteps.h"
#include "cimxml/TextList.h"

namespace ZebManager {

struct PullLimits {
  unsigned most = 512;            ///< open at once; without a name half of them, a user a quarter
  std::size_t bytes = 64U << 20;  ///< of all of them, likewise
  std::chrono::seconds time{60};  ///< that one stays open without a pull, unless its client says otherwise
};

/// Who opened an enumeration, and where.
struct EnumerationOwner {
  std::string user;       ///< empty: nobody who has signed in
  std::string nameSpace;  ///< with single slashes

  bool is(const EnumerationOwner& other) const;
};

/// What is left of one. For one operation at a time.
struct PulledEnumeration {
  PulledEnumeration(EnumerationOwner opener, PulledKind elements, OpenedEnumeration opened);
  PulledEnumeration(const PulledEnumeration&) = delete;
  PulledEnumeration& operator=(const PulledEnumeration&) = delete;
  ~PulledEnumeration() = default;

  bool atEnd() const { return _ahead.empty() && _reader.atEnd(); }
  /// The next paths, `most` at most; they are not used up.
  std::vector<std::string> peek(std::size_t most);
  void use(std::size_t paths);
  std::size_t bytes() const { return plan.size() + _paths.size(); }

  const EnumerationOwner owner;
  const PulledKind kind;
  const std::string plan;
  const std::uint64_t count;  ///< of all paths
  bool continueOnError = false;
  std::chrono::seconds time{0};

 private:
  const std::string _paths;
  TextListReader _reader;
  std::deque<std::string> _ahead;  // read and not used
};

/// Safe from any thread. Members throw CimError for what a client may not do.
class EnumerationTable {
 public:
  explicit EnumerationTable(const PullLimits& limits) : _limits(limits) {}

  /// Refuses a user who has as many as may be.
  void requirePlace(const std::string& user);
  /// Keeps one; its name is the client's to give back. From now on its time runs.
  std::string add(std::shared_ptr<PulledEnumeration> enumeration);
  /// For an operation of its owner; its time stands still, and it is nobody else's until `giveBack`.
  /// `kind`: what its elements have to be.
  std::shared_ptr<PulledEnumeration> take(const std::string& name, const EnumerationOwner& owner,
                                          std::optional<PulledKind> kind = std::nullopt);
  /// False when it was closed meanwhile. `stays`: there is more of it.
  bool giveBack(const std::string& name, bool stays);
  void close(const std::string& name, const EnumerationOwner& owner);

  std::size_t size();

 private:
  using Clock = std::chrono::steady_clock;
  struct Row {
    std::shared_ptr<PulledEnumeration> enumeration;
    Clock::time_point end;
    bool taken = false;
    bool closed = false;  ///< while it was taken
  };
  using Rows = std::map<std::string, Row>;

  void endThoseInTime();
  void refuse(const std::string& user, std::size_t bytes) const;
  Rows::iterator find(const std::string& name, const EnumerationOwner& owner);

  const PullLimits _limits;
  std::mutex _mutex;
  Rows _rows;
};

}  // namespace ZebManager
