// Memory that a process keeps.
#include <gtest/gtest.h>
#include <malloc.h>
#include <unistd.h>

#include <memory>

#include "values/KeptMemory.h"

namespace ZebManager {
namespace {

TEST(KeptMemory, WhatAnAnswerTookIsKeptForTheNext) {
  constexpr std::size_t kAnswer = 16 << 20;
  keepMemory();
  const std::size_t mapped = mallinfo2().hblks;
  auto answer = std::make_unique<char[]>(kAnswer);
  EXPECT_EQ(mallinfo2().hblks, mapped) << "a piece of its own goes back at once";
  const void* const end = sbrk(0);
  answer.reset();
  EXPECT_EQ(sbrk(0), end);
}

}  // namespace
}  // namespace ZebManager
