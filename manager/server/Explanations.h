// Why properties have the values that they have, for pages.
#pragma once

#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

#include "cli/Options.h"
#include "posix/Pipe.h"
#include "schema/ClassRepository.h"

namespace ZebManager {

/// Has the command `explain` find it out on a recording, one instance at a time, and keeps what it said for a
/// while. Nobody's request waits for long: who asks again gets it once it is known. Safe from any thread.
class Explanations {
 public:
  /// `record`: gives a recording of what is served now; this process may not be allowed to read it. May
  /// throw; called on a thread of this object.
  Explanations(const Options& options, const ClassRepository& classes, std::function<std::string()> record);
  Explanations(const Explanations&) = delete;
  Explanations& operator=(const Explanations&) = delete;
  ~Explanations();

  /// What the command says as JSON; nothing while that takes longer, or another is being found out. Throws
  /// ManagerError, once for each time that it could not be found out.
  std::optional<std::string> of(const std::string& path);

 private:
  using Clock = std::chrono::steady_clock;
  struct Found {
    std::string json;
    std::string failure;  ///< empty for none
    Clock::time_point made;
  };

  void begin(const std::string& path);
  void work(const std::string& path);
  std::string find(const std::string& path) const;

  const ClassRepository& _classes;
  const std::function<std::string()> _record;
  std::vector<std::string> _arguments;
  std::mutex _mutex;
  std::condition_variable _done;
  std::map<std::string, Found> _found;
  std::string _underWay;  // the path that is being explained
  ZEB::Pipe _stopping = ZEB::makePipe();
  std::thread _thread;
};

}  // namespace ZebManager
