// The server as its units run it: three kinds of processes, each with its own rights.
#pragma once

#include <sys/types.h>

#include <filesystem>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace ZebManager {

/// A program that runs until this goes; the processes that it started may end a moment later.
class Program {
 public:
  /// Standard output goes to the descriptor, or like errors to the end of the file.
  Program(std::vector<std::string> words, const std::filesystem::path& log, int output = -1);
  Program(const Program&) = delete;
  Program& operator=(const Program&) = delete;
  ~Program();

  pid_t id() const { return _id; }
  /// Its exit status; minus the signal that ended it.
  int end(int signal);

 private:
  pid_t _id = -1;
};

struct UnitOptions {
  std::vector<std::string> plugin = {"--source", ZEB_SNAPSHOTS "/one_port.json"};
  std::string settings = {};  ///< sections but for [access] and [state]
  std::string stack =
      "auth required pam_unix.so\naccount required pam_unix.so\n";  ///< of PAM, for this service
  std::string http = "127.0.0.1:0";
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
  const std::filesystem::path& folder() const { return _folder; }
  std::string log() const;

  pid_t server() const { return _programs.back()->id(); }
  /// Ends the server alone.
  int stop() { return _programs.back()->end(15); }
  /// Processes of that name that belong to it.
  std::vector<pid_t> processes(const std::string& name) const;
  /// Resident memory of all of them, in bytes; shared pages count once.
  std::size_t memory() const;

 private:
  std::vector<pid_t> all() const;
  void listen(const std::string& kind, const std::string& right, const std::vector<std::string>& words);
  void serve(const UnitOptions& options);
  void configure(const UnitOptions& options);

  std::filesystem::path _folder;
  std::vector<std::unique_ptr<Program>> _programs;
  std::map<std::string, std::string> _addresses;
};

/// What the kernel says of a process.
std::map<std::string, std::string> statusOf(pid_t process);

}  // namespace ZebManager
