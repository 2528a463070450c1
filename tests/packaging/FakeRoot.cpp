#include "packaging/FakeRoot.h"

#include <cctype>
#include <filesystem>
#include <fstream>
#include <regex>
#include <sstream>

#include "support/Content.h"

namespace ZebManager {

namespace fs = std::filesystem;
using ZEB::test::contentOf;
using ZEB::test::TestFolder;

std::vector<std::string> changes(const Tree& before, const Tree& after) {
  Tree all = before;
  all.insert(after.begin(), after.end());
  std::vector<std::string> found;
  for (const auto& [path, _] : all) {
    if (!before.contains(path)) {
      found.push_back("+ " + path);
    } else if (!after.contains(path)) {
      found.push_back("- " + path);
    } else if (before.at(path) != after.at(path)) {
      found.push_back("~ " + path);
    }
  }
  return found;
}

FakeRoot::FakeRoot() {
  fs::create_directories(note(""));
  setHabits("");
  fs::create_directories(path(SBIN_FOLDER));
  fs::copy(REGISTRATION "/zeb-register", path(SBIN_FOLDER));
  fs::create_symlink("zeb-register", path(SBIN_FOLDER "/zeb-unregister"));
  fs::create_directories(path(DATA_FOLDER));
  fs::copy(REGISTRATION, path(kRegistration));
  fs::remove(path(kRegistration + "/zeb-register"));
  fs::create_directories(path(DATA_FOLDER "/schema"));
  fs::copy(SCHEMA "/cim.mof", path(DATA_FOLDER "/schema"));
  write(PROVIDER_FOLDER + kLibrary, "the plug-in");
}

void FakeRoot::addProgram(const std::string& program, const std::string& settings,
                          const std::vector<std::string>& parts) const {
  std::string text =
      "#!/bin/sh\nroot='" + path("") + "' notes='" + _folder.file("notes") + "'\n" + settings + "\n";
  for (const std::string& part : parts) text += contentOf(STAND_INS "/" + part);
  write(program, text);
  fs::permissions(path(program), fs::perms::owner_all);
}

void FakeRoot::setHabits(const std::string& lines) const {
  std::ofstream(note("habits")) << lines << "\n";
}

std::vector<std::string> FakeRoot::calls() const {
  const std::string text = contentOf(note("record"));
  fs::remove(note("record"));
  std::istringstream record(
      std::regex_replace(std::regex_replace(text, std::regex(path("")), "ROOT"),
                         std::regex(R"((ROOT[^ ]*/\.zeb-register|/tmp/tmp)\.[A-Za-z0-9]+)"), "WORK"));
  std::vector<std::string> lines;
  for (std::string line; std::getline(record, line);) lines.push_back(line);
  return lines;
}

bool FakeRoot::goesOn() const {
  const std::string leader = contentOf(note("waiting"));
  for (const auto& process : fs::directory_iterator("/proc")) {
    if (!std::isdigit(process.path().filename().string().front())) continue;
    const std::string status = contentOf(process.path() / "stat");
    // After the name: state, parent, group. Who has ended and is not asked for counts as gone.
    std::istringstream fields(status.substr(std::min(status.size(), status.rfind(')') + 1)));
    std::string state, parent, group;
    if (fields >> state >> parent >> group; group + "\n" == leader && state != "Z") return true;
  }
  return false;
}

Tree FakeRoot::tree() const {
  Tree found;
  for (const auto& entry : fs::recursive_directory_iterator(path(""))) {
    std::ostringstream text;
    text << std::oct << static_cast<unsigned>(entry.symlink_status().permissions()) << " ";
    if (entry.is_symlink()) {
      text << "link " << fs::read_symlink(entry.path());
    } else if (entry.is_directory()) {
      text << "folder";
    } else {
      text << contentOf(entry.path());
    }
    found[entry.path().string().substr(path("").size())] = text.str();
  }
  return found;
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

Outcome FakeRoot::call(const std::string& program, std::vector<std::string> arguments,
                       const std::vector<std::string>& environment) const {
  arguments.insert(arguments.begin(), {"--root", path("")});
  return run(path(SBIN_FOLDER "/" + program), arguments, environment);
}

}  // namespace ZebManager
