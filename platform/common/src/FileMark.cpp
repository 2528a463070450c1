#include "FileMark.h"

#include <sys/stat.h>

#include <tuple>

namespace ZEB {

FileMark FileMark::of(const std::string& file, const SqliteDatabase& database) {
  struct stat status {};
  if (stat(file.c_str(), &status) != 0) return {};
  timespec now{};
  clock_gettime(CLOCK_REALTIME_COARSE, &now);
  FileMark mark;
  mark._device = status.st_dev;
  mark._inode = status.st_ino;
  mark._size = status.st_size;
  mark._changed = status.st_ctim;
  mark._transactions = database.changes();
  const auto stampOf = [](const timespec& time) { return std::tuple(time.tv_sec, time.tv_nsec); };
  mark._settled = stampOf(now) != stampOf(mark._changed);
  return mark;
}

bool FileMark::holds(const FileMark& later) const {
  return _settled && sameTransactions(later) && _size == later._size &&
         _changed.tv_sec == later._changed.tv_sec && _changed.tv_nsec == later._changed.tv_nsec;
}

bool FileMark::sameTransactions(const FileMark& later) const {
  return isOfAFile() && _device == later._device && _inode == later._inode &&
         _transactions == later._transactions;
}

}  // namespace ZEB
