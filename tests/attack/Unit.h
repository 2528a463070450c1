// The server as its units run it: three kinds of processes, each with its own rights.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "posix/ChildProcess.h"
#include "posix/TemporaryFolder.h"

namespace ZebManager {

struct UnitOptions {
  std::vector<std::string> plugin = {"--source", ZEB_SNAPSHOTS "/one_port.json"};
  std::string settings = {};  ///< sections but for [access] and [state]
  std::string stack =
      "auth required pam_unix.so\naccount required pam_unix.so\n";  ///< of PAM, for this service
  std::string http = "127.0.0.1:0";
  std::string state = {};  ///< folder; empty: one that goes with the object
  std::size_t addressSpace =
      0;  ///< of the server and of the plug-in's process, in bytes; 0: as much as there is
  std::string logLevel = "warn";  ///< of the plug-in
};

/// The server is the user of `kServerUser`, without any of root's rights; the processes of the plug-in and of
/// logins are root with one right each, and are started when the server connects. Needs the ground.
class Unit {
 public:
  explicit Unit(const UnitOptions& options = {});
  Unit(const Unit&) = delete;
  Unit& operator=(const Unit&) = delete;
  ~Unit();

  const std::string& http() const { return _addresses.at("http"); }
  const std::string& https() const { return _addresses.at("https"); }
  const std::filesystem::path& folder() const { return _folder.path(); }
  std::string log() const;

  pid_t server() const { return _programs.back()->id(); }
  /// Ends the server alone.
  int stop();
  /// Processes of that name that belong to it.
  std::vector<pid_t> processes(const std::string& name) const;
  /// Resident memory of all of them, in bytes; shared pages count once.
  std::size_t memory() const;

 private:
  std::vector<pid_t> all() const;
  void listen(const std::string& kind, const std::string& right, const std::vector<std::string>& words,
              const UnitOptions& options);
  void serve(const UnitOptions& options);
  void configure(const UnitOptions& options);
  /// Standard output goes to the descriptor, or like errors to the log.
  void start(std::vector<std::string> words, int output = -1);

  const ZEB::TemporaryFolder _folder;
  std::vector<std::unique_ptr<ZEB::ChildProcess>> _programs;
  std::map<std::string, std::string> _addresses;
};

/// What the kernel says of a process.
std::map<std::string, std::string> statusOf(pid_t process);

}  // namespace ZebManager
