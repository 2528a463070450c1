#include <gmock/gmock.h>

#include <array>
#include <csignal>
#include <optional>
#include <random>
#include <thread>

#include "KeepingFixture.h"
#include "support/Length.h"

// Object managers that are killed while clients change what is kept.

namespace ZEB::test {
namespace {

using CmpiCpp::CmpiData;

/// One of two clients at once, each with an object manager of its own. Every change sets what follows from
/// its number.
class Client {
 public:
  Client(Keeping& kept, Kept what, int which) : _kept(kept), _what(what), _which(which) {}

  /// From the number on, for ever.
  int change(std::uint32_t from, const Acknowledgements& acknowledged) {
    _kept.start();
    for (std::uint32_t n = from;; ++n) {
      if (put(n) != CMPI_RC_OK) _exit(95);
      acknowledged.give(n);
    }
  }

  /// The number to go on with when it was told last that the n-th change is kept, or nothing when that is not
  /// so: one more may be there without a word, of the settings even a part of it.
  std::optional<std::uint32_t> next(std::uint32_t n) {
    if (isAfter(n + 1)) return n + 2;
    if (isAfter(n) || isWithin(n + 1)) return n + 1;
    return std::nullopt;
  }

 private:
  static constexpr int kOwn = kPorts / 2;

  CMPIrc put(std::uint32_t n) {
    if (_what == Kept::Filters) return _kept.include(portOf(n), valueOf(n));
    CmpiCpp::CmpiInstance settings = _kept.only("ZEB_EthEventSettings");
    settings.addProperty(number(), n);
    settings.addProperty(flag(), n % 2 == 0);
    return _kept.modify(settings.path(), settings, {number(), flag()});
  }
  bool isAfter(std::uint32_t n) {
    if (_what == Kept::Settings) return hasSettings(n, n % 2 == 0);
    for (std::uint32_t last = n; last > 0 && last + kOwn > n; --last) {
      if (_kept.included(portOf(last)) != valueOf(last)) return false;
    }
    return true;
  }
  /// The number goes before the flag.
  bool isWithin(std::uint32_t n) { return _what == Kept::Settings && hasSettings(n, n % 2 != 0); }
  bool hasSettings(std::uint32_t n, bool even) {
    return _kept.setting(number()) == CmpiData(n) && _kept.setting(flag()) == CmpiData(even);
  }

  const char* number() const { return _which == 0 ? "PollInterval" : "MaxFloodLevel"; }
  const char* flag() const { return _which == 0 ? "MonitorPorts" : "MonitorRedundancySets"; }
  int portOf(std::uint32_t n) const { return 1 + _which * kOwn + static_cast<int>(n % kOwn); }
  static bool valueOf(std::uint32_t n) { return n / kOwn % 2 != 0; }

  Keeping& _kept;
  const Kept _what;
  const int _which;
};

class KeptUnderKillsTest : public Keeping, public testing::WithParamInterface<Kept> {
 protected:
  KeptUnderKillsTest() : Keeping(GetParam()) {}
};

INSTANTIATE_TEST_SUITE_P(Stores, KeptUnderKillsTest, testing::Values(Kept::Settings, Kept::Filters),
                         [](const auto& row) { return nameOf(row.param); });

TEST_P(KeptUnderKillsTest, losesNothingWhenTwoObjectManagersAreKilledAtAnyPoint) {
  std::mt19937 random(20260103 + static_cast<unsigned>(shareOfManager().number));
  std::uniform_int_distribution<int> microseconds(0, 10000);
  std::array<Client, 2> clients{Client(*this, GetParam(), 0), Client(*this, GetParam(), 1)};
  std::array<std::uint32_t, 2> next{1, 1};
  for (const std::uint64_t round : sharedRounds(length(50u, 1000u))) {
    std::array<Acknowledgements, 2> acknowledged;
    ChildProcess first([&] { return clients[0].change(next[0], acknowledged[0]); });
    ChildProcess second([&] { return clients[1].change(next[1], acknowledged[1]); });
    for (const auto& each : acknowledged) each.waitForFirst();
    for (ChildProcess* each : {&first, &second}) {
      std::this_thread::sleep_for(std::chrono::microseconds(microseconds(random)));
      each->kill();
      ASSERT_EQ(each->wait(), -SIGKILL);
    }
    start();
    for (std::size_t i = 0; i < clients.size(); ++i) {
      const std::uint32_t last = std::max(acknowledged[i].last(), next[i]);
      const auto goOn = clients[i].next(last);
      ASSERT_TRUE(goOn) << "round " << round << ", client " << i << " after " << last;
      next[i] = *goOn;
    }
    stop();
  }
  EXPECT_EQ(lines(), 0) << "nothing was damaged";
}

}  // namespace
}  // namespace ZEB::test
