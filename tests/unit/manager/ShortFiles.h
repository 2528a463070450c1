// A disk without room.
#pragma once

#include <gtest/gtest.h>
#include <signal.h>
#include <sys/resource.h>

namespace ZebManager {

/// While no file may become longer than that.
class ShortFiles {
 public:
  explicit ShortFiles(rlim_t longest) {
    signal(SIGXFSZ, SIG_IGN);
    set(longest);
  }
  ShortFiles(const ShortFiles&) = delete;
  ShortFiles& operator=(const ShortFiles&) = delete;
  ~ShortFiles() { set(RLIM_INFINITY); }

 private:
  static void set(rlim_t longest) {
    const rlimit limit{longest, RLIM_INFINITY};
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &limit), 0);
  }
};

}  // namespace ZebManager
