#include "packaging/FakeRoot.h"

#include <filesystem>
#include <fstream>
#include <sstream>

namespace ZebManager {

namespace fs = std::filesystem;

FakeRoot::FakeRoot() {
  fs::create_directories(path(DATA_FOLDER));
  fs::copy(REGISTRATION, path(DATA_FOLDER "/registration"));
  fs::create_directories(path(DATA_FOLDER "/schema"));
  fs::copy(SCHEMA "/cim.mof", path(DATA_FOLDER "/schema"));
  write(PROVIDER_FOLDER "/libZEBEthernetPortProvider.so", "");
}

void FakeRoot::addProgram(const std::string& program, const std::string& body) {
  write(program, "#!/bin/sh\nrecord=" + path("/record") + "\necho \"${0##*/} $*\" >>$record\n" + body + "\n");
  fs::permissions(path(program), fs::perms::owner_all);
}

void FakeRoot::addSfcb(const std::string& providerDirs) {
  addProgram("/usr/bin/sfcbrepos");
  if (!providerDirs.empty()) {
    write("/etc/sfcb/sfcb.cfg", "httpPort: 5988\nproviderDirs: " + providerDirs + "\n");
  }
}

void FakeRoot::addPegasus() {
  fs::create_directories(path("/usr/lib/Pegasus/providers"));
  const std::string module = "module=" + path("/module") + "\n";
  addProgram("/usr/sbin/cimmof", module + R"(
case $* in *ZEBEthernetProvider.mof)
  [ ! -e $module ] || { echo "The provider module is registered already"; exit 1; }
  touch $module ;;
esac)");
  addProgram("/usr/bin/cimprovider", module + R"(
case $1 in
  -l) echo "MODULE STATUS"; [ ! -e $module ] || echo "ZEBEthernetPortProvider OK" ;;
  -r) rm $module ;;
esac)");
  addProgram("/usr/bin/cimcli");
}

std::vector<std::string> FakeRoot::calls() {
  std::istringstream record(read("/record"));
  std::vector<std::string> lines;
  const std::string root = path("");
  for (std::string line; std::getline(record, line);) {
    for (size_t at = 0; (at = line.find(root, at)) != std::string::npos;)
      line.replace(at, root.size(), "ROOT");
    lines.push_back(line);
  }
  fs::remove(path("/record"));
  return lines;
}

bool FakeRoot::has(const std::string& below) const {
  return fs::exists(fs::symlink_status(path(below)));
}

void FakeRoot::write(const std::string& below, const std::string& text) const {
  fs::create_directories(fs::path(path(below)).parent_path());
  std::ofstream(path(below), std::ios::binary) << text;
}

std::string FakeRoot::linkAt(const std::string& below) const {
  std::error_code none;
  return fs::read_symlink(path(below), none);
}

Outcome FakeRoot::call(const std::string& program, std::vector<std::string> arguments) const {
  arguments.insert(arguments.begin(), {"--root", path("")});
  return run(REGISTRATION "/" + program, arguments);
}

}  // namespace ZebManager
