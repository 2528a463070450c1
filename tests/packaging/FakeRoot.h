// A root folder with the installed registration, in which object managers are set up whose programs are
// stand-ins.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "manager/Process.h"
#include "support/Content.h"
#include "support/TestFolder.h"

namespace ZebManager {

inline const std::string kLibrary = "/libZEBEthernetPortProvider.so";
inline const std::string kRegistration = DATA_FOLDER "/registration";

/// Everything below a folder by its path: kind, rights, and content or target.
using Tree = std::map<std::string, std::string>;

/// What is new (+), gone (-) and changed (~) in a tree, a path each, in their order.
std::vector<std::string> changes(const Tree& before, const Tree& after);

class FakeRoot {
 public:
  FakeRoot();

  /// A stand-in at a path of the root, with shell assignments that it needs:
  /// `addProgram("/usr/bin/sfcbrepos", …)`.
  void addProgram(const std::string& path, const std::string& settings = "",
                  const std::vector<std::string>& parts = {}) const;
  /// Makes the stand-ins behave as the lines say, and no longer otherwise.
  void setHabits(const std::string& lines) const;

  Outcome doRegister(std::vector<std::string> more = {}) const { return call("zeb-register", more); }
  Outcome doUnregister(std::vector<std::string> more = {}) const { return call("zeb-unregister", more); }
  /// The same, told by the environment.
  Outcome doRegisterIn(const std::vector<std::string>& environment) const {
    return call("zeb-register", {}, environment);
  }

  /// The calls of stand-ins since it was last asked, one a line, with the root's own path as ROOT and
  /// temporary folders as WORK.
  std::vector<std::string> calls() const;
  /// Whether the program that was interrupted, and what it had started, still run.
  bool goesOn() const;

  Tree tree() const;
  std::string path(const std::string& below) const { return _folder.file("root" + below); }
  std::string read(const std::string& below) const { return ZEB::test::contentOf(path(below)); }
  bool has(const std::string& below) const;
  void write(const std::string& below, const std::string& text) const;
  void append(const std::string& below, const std::string& text) const { write(below, read(below) + text); }
  /// Where a symbolic link of the root leads; empty when there is none.
  std::string linkAt(const std::string& below) const;

 private:
  Outcome call(const std::string& program, std::vector<std::string> arguments,
               const std::vector<std::string>& environment = {}) const;
  std::string note(const std::string& name) const { return _folder.file("notes/" + name); }

  ZEB::test::TestFolder _folder;
};

}  // namespace ZebManager
