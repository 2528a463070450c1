// Logins on their way to the processes that judge them.
#pragma once

#include <condition_variable>
#include <list>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include "isolation/ConnectedProcess.h"
#include "login/LoginAttempt.h"

namespace ZebManager {

/// Two are judged at a time, each by a process that stays for the next. Others wait, a bounded number of them
/// and of each client's, and no longer than some seconds; who has been let in before goes first. Safe from
/// any thread.
class LoginLine {
 public:
  explicit LoginLine(ProcessSource source);
  LoginLine(const LoginLine&) = delete;
  LoginLine& operator=(const LoginLine&) = delete;
  ~LoginLine();

  /// Nothing when the line is too long. `client`: whose place it takes; `knownBefore`: somebody with these
  /// credentials has been let in. Throws ManagerError when nobody judges.
  std::optional<Verdict> judge(const LoginAttempt& attempt, const std::string& client, bool knownBefore);
  /// From now on nobody judges, not even those who have begun.
  void stop();

 private:
  class Seat;
  struct Waiting {
    std::string client;
    bool knownBefore;
  };

  bool mayWait(const Waiting& waiting) const;
  bool isNext(const Waiting& waiting) const;
  std::unique_ptr<Seat> takeSeat(const std::string& client, bool knownBefore);
  void giveBack(std::unique_ptr<Seat> seat);

  const ProcessSource _source;
  std::mutex _mutex;
  std::condition_variable _changed;
  std::vector<std::unique_ptr<Seat>> _free;  // two, those that are taken left out
  std::list<Waiting> _line;
  bool _closed = false;
  const ZEB::FileDescriptor _stop;  // readable then
};

}  // namespace ZebManager
