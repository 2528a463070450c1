#pragma once

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "posix/ChildProcess.h"
#include "posix/Pipe.h"

namespace ZEB::test {

/// A pipe by which a child acknowledges what it was told is on disk.
class Acknowledgements {
 public:
  /// The child's; ends it when nobody listens.
  void give(std::uint32_t number) const;
  void waitForFirst() const;
  /// The last one that was given, 0 for none after the first; the child has ended.
  std::uint32_t last();

 private:
  Pipe _pipe = makePipe();
};

// Other processes are started from a program: what a child of a process with threads may do is next to
// nothing.

/// Runs SQL on a store's file in another process; whether it succeeded.
bool runSql(const std::string& file, const std::string& statements);

/// Another process that gives a key of a store all the values from `first` to `last`.
ChildProcess setInStore(const std::string& store, const std::string& key, std::uint32_t first,
                        std::uint32_t last);

/// Another process that has a store's file locked.
class Locker {
 public:
  /// For as long as this lives.
  explicit Locker(const std::string& file);
  /// Nobody may write for that time; then the SQL is run, and the lock let go of.
  Locker(const std::string& file, std::chrono::milliseconds time, const std::string& meanwhile);

 private:
  explicit Locker(std::vector<std::string> words);

  Pipe _said = makePipe();
  ChildProcess _process;
};

/// What stands for the result of a body that could not be run.
inline constexpr int kNoDisk = 77;
/// Runs `body` in a process for which the directory is a file system of 256 KiB in memory. `kNoDisk` where no
/// such thing can be mounted.
int onSmallDisk(const std::string& directory, const std::function<int()>& body);
/// Takes all the room that is left, in a file that is called "filler".
void fillDisk(const std::string& directory);
/// Of the file system that is mounted there.
void makeReadOnly(const std::string& directory, bool readOnly);

}  // namespace ZEB::test
