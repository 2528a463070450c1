#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>

#include "kernel/KernelSource.h"

// What the kernel says of this namespace.

namespace ZEB::test {

using namespace ethernet;

inline HostSnapshot readAll() {
  auto snapshot = KernelSource().readAll();
  EXPECT_TRUE(snapshot) << (snapshot ? "" : snapshot.failure().what);
  return snapshot ? std::move(*snapshot) : HostSnapshot{};
}

inline const LinkFacts& linkNamed(const HostSnapshot& snapshot, const std::string& name) {
  const auto found = std::ranges::find(snapshot.links, name, &LinkFacts::name);
  if (found == snapshot.links.end()) throw std::runtime_error("no link " + name);
  return *found;
}

}  // namespace ZEB::test
