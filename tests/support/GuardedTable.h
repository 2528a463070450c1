#pragma once

#include <sys/mman.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <new>

namespace ZEB::test {

/// A table of functions of which the first `size` bytes are there, all zero at first. Reading behind them
/// ends the process.
template <class Table>
class GuardedTable {
 public:
  explicit GuardedTable(std::size_t size = sizeof(Table)) {
    const auto page = static_cast<std::size_t>(getpagesize());
    void* mapped = mmap(nullptr, 2 * page, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    if (mapped == MAP_FAILED) throw std::bad_alloc();
    _pages = static_cast<std::byte*>(mapped);
    mprotect(_pages + page, page, PROT_NONE);
    _table = reinterpret_cast<Table*>(_pages + page - size);
  }
  ~GuardedTable() { munmap(_pages, 2 * static_cast<std::size_t>(getpagesize())); }
  GuardedTable(const GuardedTable&) = delete;
  GuardedTable& operator=(const GuardedTable&) = delete;

  Table& get() { return *_table; }

 private:
  std::byte* _pages;
  Table* _table;
};

}  // namespace ZEB::test
