#pragma once

#include <gtest/gtest.h>

#include <nlohmann/json_fwd.hpp>
#include <string>
#include <string_view>

#include "Guest.h"

namespace ZEB::guest {

/// The server that every test of a binary shares, started before the first of them:
///
///     slot 3  e1000e, two ports   slot3a, slot3b   cables to a partner
///     slot 4  vmxnet3             slot4
///     slot 7  virtio_net, 10 Gb   slot7            cable to a partner
///     slot 9  free
///     board   e1000e              lom1             labelled "Onboard LAN 1", cable to a partner
///     board   e1000               e1000            cable to a partner
///     board   8139cp              rtl8139
///     board   e100                e100
///     board   virtio_net          virtio           says no speed, cable to a partner
///
/// Frames of a virtio card whose cable leads nowhere are never sent, nor counted.
Hardware testServer();

/// The free slot of testServer().
inline constexpr int kFreeSlot = 9;

/// What the guest of this binary begins with; to be said before main(). The agent, when nobody says anything.
bool beginWith(FirstProgram first);

/// Fixture of every test that needs the server. Each test finds it reset (see Guest::reset). The tests of a
/// binary are skipped, with the reason, on a machine that cannot have the guest.
class GuestFixture : public testing::Test {
 protected:
  void SetUp() override;

  static Guest& guest();

  /// Standard output of a script that must succeed, as JSON.
  static nlohmann::json jsonOf(std::string_view script);
  /// The first line of a file in the guest; empty when it cannot be read.
  static std::string fileLine(const std::string& path);
  /// Whether the interface gets to this carrier in time, and to the operational state that the kernel gives
  /// it a moment later.
  static bool awaitCarrier(const std::string& link, bool carrier);
  /// Of every interface, by name, what `ip -s` counts.
  static nlohmann::json statistics();
  /// Sends some frames out of an interface that is up.
  static void makeTraffic(const std::string& link);
  /// Sets interfaces up and waits for their carrier.
  static void bringUp(const std::vector<std::string>& links);
};

}  // namespace ZEB::guest
