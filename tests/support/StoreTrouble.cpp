#include "StoreTrouble.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <spawn.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

#include "posix/Arguments.h"

namespace ZEB::test {
namespace {

/// Descriptors of the child stand where those of this process do.
ChildProcess spawn(std::vector<std::string> words, int out) {
  posix_spawn_file_actions_t actions;
  posix_spawn_file_actions_init(&actions);
  posix_spawn_file_actions_adddup2(&actions, out, STDOUT_FILENO);
  words.insert(words.begin(), ZEB_STORE_CLIENT);
  pid_t id = -1;
  const int error =
      posix_spawn(&id, words.front().c_str(), &actions, nullptr, argumentsOf(words).data(), environ);
  posix_spawn_file_actions_destroy(&actions);
  if (error != 0) throw std::system_error(error, std::generic_category(), words.front());
  return ChildProcess(id);
}

}  // namespace

void Acknowledgements::give(std::uint32_t number) const {
  if (write(_pipe.writing.get(), &number, sizeof number) != sizeof number) _exit(98);
}

void Acknowledgements::waitForFirst() const {
  std::uint32_t number = 0;
  if (read(_pipe.reading.get(), &number, sizeof number) != sizeof number)
    ADD_FAILURE() << "the child never wrote";
}

std::uint32_t Acknowledgements::last() {
  _pipe.writing = {};
  std::uint32_t number = 0;
  for (std::uint32_t next = 0; read(_pipe.reading.get(), &next, sizeof next) == sizeof next;) number = next;
  return number;
}

bool runSql(const std::string& file, const std::string& statements) {
  return spawn({"sql", file, statements}, STDERR_FILENO).wait() == 0;
}

ChildProcess setInStore(const std::string& store, const std::string& key, std::uint32_t first,
                        std::uint32_t last) {
  return spawn({"set", store, key, std::to_string(first), std::to_string(last)}, STDERR_FILENO);
}

Locker::Locker(const std::string& file) : Locker({"sql", file, "BEGIN EXCLUSIVE", ":say", ":wait"}) {}

Locker::Locker(const std::string& file, std::chrono::milliseconds time, const std::string& meanwhile)
    : Locker({"sql", file, "BEGIN IMMEDIATE", ":say", ":wait " + std::to_string(time.count()), meanwhile,
              "COMMIT"}) {}

Locker::Locker(std::vector<std::string> words) : _process(spawn(std::move(words), _said.writing.get())) {
  _said.writing = {};
  char byte = 0;
  if (read(_said.reading.get(), &byte, 1) != 1) ADD_FAILURE() << "the store was not locked";
}

int onSmallDisk(const std::string& directory, const std::function<int()>& body) {
  return ChildProcess([&] {
           std::filesystem::create_directories(directory);
           if (unshare(CLONE_NEWNS) != 0 && unshare(CLONE_NEWUSER | CLONE_NEWNS) != 0) return kNoDisk;
           if (mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0) return kNoDisk;
           if (mount("tmpfs", directory.c_str(), "tmpfs", 0, "size=256k") != 0) return kNoDisk;
           return body();
         })
      .wait();
}

void fillDisk(const std::string& directory) {
  std::ofstream filler(directory + "/filler", std::ios::binary);
  const std::string block(1024, 'f');
  while (filler.write(block.data(), static_cast<std::streamsize>(block.size())).flush()) {
  }
}

void makeReadOnly(const std::string& directory, bool readOnly) {
  const unsigned long flags = MS_REMOUNT | (readOnly ? MS_RDONLY : 0);
  if (mount(nullptr, directory.c_str(), nullptr, flags, nullptr) != 0) {
    throw std::system_error(errno, std::generic_category(), directory);
  }
}

}  // namespace ZEB::test
