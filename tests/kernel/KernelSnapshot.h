#pragma once

#include <gtest/gtest.h>
#include <linux/if.h>
#include <unistd.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <utility>

#include "Namespace.h"
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

/// Waits until nothing more is announced: a link's operational state follows its carrier whenever the kernel
/// has the time.
inline bool comesToRest(KernelSource& source) {
  const auto follows = [](const LinkFacts& link) {
    return (link.flags.value_or(0) & IFF_UP) == 0 || !link.carrier.value_or(false) ||
           link.operState != IF_OPER_DOWN;
  };
  return eventually(
      [&] {
        const auto snapshot = source.readAll();
        usleep(300'000);
        return snapshot && std::ranges::all_of(snapshot->links, follows) && !source.announced();
      },
      std::chrono::seconds(60));
}

}  // namespace ZEB::test
