// The plug-in's process, seen from the server.
#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "isolation/ConnectedProcess.h"
#include "isolation/IndicationFilter.h"

namespace ZebManager {

/// How provider processes are started, and what they may take.
struct SupervisorOptions {
  using Milliseconds = std::chrono::milliseconds;

  /// What is executed has to end in `runProviderProcess`.
  ProcessSource process;

  /// A call that has taken so long while others wait makes a fresh process take over.
  Milliseconds patience{1000};
  /// Another call waits when it has been under way for so long.
  Milliseconds grace{250};
  /// The same while no other call waits but somebody listens to indications.
  Milliseconds alertPatience{5000};
  /// After it a call is answered as timed out.
  Milliseconds timeLimit{30'000};
  /// For loading the plug-in, until the process says that it is ready.
  Milliseconds startLimit{30'000};
  /// Before the second replacement of a process that did not last, doubled with each one that did nothing
  /// useful.
  Milliseconds firstBackOff{100};
  Milliseconds longestBackOff{5000};

  /// At once in one process; others wait for a place. The plug-in has one lock: more would only wait for
  /// that, and its own thread, which finds out about links, with them.
  unsigned calls = 4;
  unsigned processes = 8;  ///< at once; beyond it the one that was replaced first has to end early

  /// One line for each start that failed and each process that ended unasked. Called on threads
  /// of the supervisor's. Empty: nobody is told.
  std::function<void(const std::string&)> log;
};

/// Keeps one provider process at work and replaces it when it ends or no longer answers. Safe from any
/// thread.
class ProviderSupervisor {
 public:
  struct Answer {
    enum class Outcome { Done, TimedOut, Ended };
    Outcome outcome = Outcome::Ended;
    std::string body;  ///< the answer; without one, a line that says why, and whether it may have an effect
  };

  /// An indication and the names of the filters that it satisfies. Called on one thread of the supervisor's,
  /// in order; what it throws is logged. A process waits with further indications while it does not return.
  using Sink = std::function<void(const std::vector<std::string>& filterNames, std::string instanceElement)>;

  /// Starts the first process without waiting for it. Throws ManagerError when the system has no descriptors
  /// left.
  ProviderSupervisor(SupervisorOptions options, Sink sink);
  ProviderSupervisor(const ProviderSupervisor&) = delete;
  ProviderSupervisor& operator=(const ProviderSupervisor&) = delete;
  /// Ends every process, as `stop` does; indications that arrived still reach the sink. No call may be under
  /// way.
  ~ProviderSupervisor();

  /// One CIM-XML message, performed in the provider's process. Blocks for at most the time limit.
  /// `repeatable`: reads; they are sent again to a fresh process when theirs ended or stuck under them.
  Answer perform(std::string_view message, bool repeatable);

  /// Answers everything that is under way, and all that comes, with an error, and ends every process.
  void stop();

  /// What is subscribed to from now on; a fresh process gets the same.
  void setFilters(const std::vector<IndicationFilter>& filters);

 private:
  class Loop;
  std::unique_ptr<Loop> _loop;
};

}  // namespace ZebManager
