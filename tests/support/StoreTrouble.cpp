#include "StoreTrouble.h"

#include <gtest/gtest.h>
#include <sched.h>
#include <sqlite3.h>
#include <sys/mount.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <thread>

namespace ZEB::test {
namespace {

/// An open database file, for a child.
sqlite3* opened(const std::string& file) {
  sqlite3* database = nullptr;
  if (sqlite3_open(file.c_str(), &database) != SQLITE_OK) _exit(97);
  sqlite3_busy_timeout(database, 5000);
  return database;
}

bool run(sqlite3* database, const std::string& statements) {
  return sqlite3_exec(database, statements.c_str(), nullptr, nullptr, nullptr) == SQLITE_OK;
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
  return ChildProcess([&] { return run(opened(file), statements) ? 0 : 1; }).wait() == 0;
}

Locker::Locker(const std::string& file)
    : _process([&] {
        if (!run(opened(file), "BEGIN EXCLUSIVE")) return 1;
        _locked.give(1);
        pause();
        return 0;
      }) {
  _locked.waitForFirst();
}

Locker::Locker(const std::string& file, std::chrono::milliseconds time, const std::string& meanwhile)
    : _process([&] {
        sqlite3* const database = opened(file);
        if (!run(database, "BEGIN IMMEDIATE")) return 1;
        _locked.give(1);
        std::this_thread::sleep_for(time);
        return run(database, meanwhile + "; COMMIT") ? 0 : 2;
      }) {
  _locked.waitForFirst();
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
