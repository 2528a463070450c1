// A root folder with the installed registration, and object managers that only write down how they were
// called.
#pragma once

#include <string>
#include <vector>

#include "manager/Process.h"
#include "support/TemporaryDirectory.h"

namespace ZebManager {

class FakeRoot {
 public:
  FakeRoot();

  /// A program at a path of the root: a shell script that first appends its name and arguments to the record.
  void addProgram(const std::string& path, const std::string& body = "");
  void addSfcb(const std::string& providerDirs = "");
  /// Behaves as the real one: refuses a module that is there, and knows none that was not registered.
  void addPegasus();

  Outcome doRegister(std::vector<std::string> more = {}) const { return call("zeb-register", more); }
  Outcome doUnregister(std::vector<std::string> more = {}) const { return call("zeb-unregister", more); }

  /// The calls of programs since it was last asked, one a line, with the root's own path as ROOT.
  std::vector<std::string> calls();

  std::string path(const std::string& below) const { return _folder.file("root" + below); }
  std::string read(const std::string& below) const {
    return ZEB::test::TemporaryDirectory::read(path(below));
  }
  bool has(const std::string& below) const;
  void write(const std::string& below, const std::string& text) const;
  /// Where a symbolic link of the root leads; empty when there is none.
  std::string linkAt(const std::string& below) const;

 private:
  Outcome call(const std::string& program, std::vector<std::string> arguments) const;

  ZEB::test::TemporaryDirectory _folder;
};

}  // namespace ZebManager
