#include <gtest/gtest.h>

#include <cstdlib>
#include <optional>

#include "AlertModel.h"
#include "History.h"
#include "LongLived.h"
#include "ProviderFixture.h"
#include "support/Length.h"

namespace ZEB::test {
namespace {

class Hunt : public ProviderTest {
 public:
  /// Every plug-in opens its stores, and nobody waits for a disk here.
  static void SetUpTestSuite() { setenv("TMPDIR", "/dev/shm", 1); }
  static void TearDownTestSuite() { unsetenv("TMPDIR"); }

 protected:
  /// What went wrong; nothing when nothing did.
  std::optional<std::string> play(const History& history) {
    log = std::make_shared<RecordingLogSink>();  // ten thousand histories have more to say than memory holds
    setProcessLogSink(log, LogLevel::Info);
    Machine machine = firstMachine();
    const auto file = folder / "machine.json";
    std::filesystem::remove_all(folder / "store");
    machine.play(file);
    configure("ZEB_LINK_SETTLE_SECONDS", "0");
    configure("ZEB_SOURCE_FILE", file.string());
    FakeBroker own;
    LongLived lived(own);
    AlertModel model(machine);
    bool spoilt = false;
    std::size_t step = 0;
    for (const Step& next : history) {
      ++step;
      if (apply(next, machine)) {
        if (!spoilt) machine.play(file);
      } else if (next.kind == Step::Kind::Spoil) {
        spoilt = !spoilt;
        if (spoilt) Machine::spoil(file);
        if (!spoilt) machine.play(file);
      } else if (next.kind == Step::Kind::Request) {
        lived.request(next.which);
      } else if (next.kind == Step::Kind::Pass) {
        lived.pass();
        const auto sent = lived.sent();
        const auto expected = spoilt ? std::vector<Alert>{} : model.pass(machine);
        std::string wrong = differences(expected, sent);
        if (wrong.empty() && !spoilt) wrong = differences(servedByANewOne(), lived.serves());
        if (!wrong.empty()) return "step " + std::to_string(step) + ":\n" + wrong;
      }
    }
    return std::nullopt;
  }

  /// Leaves out what does not matter, again and again.
  History shortest(History history) {
    for (std::size_t chunk = history.size() / 2; chunk > 0; chunk /= 2) {
      for (std::size_t i = 0; i + chunk <= history.size();) {
        History less = history;
        less.erase(less.begin() + static_cast<std::ptrdiff_t>(i),
                   less.begin() + static_cast<std::ptrdiff_t>(i + chunk));
        if (play(less)) {
          history = std::move(less);
        } else {
          i += chunk;
        }
      }
    }
    return history;
  }

  /// Every tenth is a long one.
  void hunt(std::uint64_t seed) {
    const History history = randomHistory(seed, seed % 10 == 0 ? 300 : 60);
    if (!play(history)) return;
    const History least = shortest(history);
    std::string text;
    for (const Step& step : least) text += "  " + step.text() + "\n";
    ADD_FAILURE() << "seed " << seed << ", shortest history:\n" << text << *play(least);
  }
};

TEST_F(Hunt, ThroughRandomHistories) {
  if (const char* seed = std::getenv("ZEB_HUNT_SEED")) {
    hunt(std::strtoull(seed, nullptr, 10));
    return;
  }
  for (const std::uint64_t round : sharedRounds(length(kSanitized ? 30u : 200u, 10'000u))) {
    if (!HasFailure()) hunt(round + 1);
  }
}

}  // namespace
}  // namespace ZEB::test
