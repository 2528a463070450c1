// Slow or stuck, as pulses tell it.
#include <gmock/gmock.h>

#include "isolation/Frame.h"
#include "isolation/ProgressWatch.h"

namespace ZebManager {
namespace {

using namespace std::chrono_literals;
using testing::HasSubstr;
using testing::IsEmpty;

const Pulse kAsleep{.calls = {{7, 100, false}, {8, 100, false}}};
const Pulse kComputing{.calls = {{7, 100, true}, {8, 100, false}}};
const Pulse kOtherThread{.calls = {{7, 100, false}}, .othersAwake = true};

class Progress : public testing::Test {
 protected:
  /// Pulses at regular times, the last one now.
  void tell(const Pulse& pulse, std::chrono::milliseconds time, std::chrono::milliseconds step = 125ms) {
    for (const auto end = now + time; now < end;) {
      now += step;
      if (watch.wantsPulse(now)) watch.asked(now);
      watch.note(pulse, now);
    }
  }

  ProgressWatch::Clock::time_point now{std::chrono::hours(1)};
  ProgressWatch watch{1s, 5s};
};

TEST_F(Progress, NothingThatMovesForThePatienceIsTrouble) {
  tell(kAsleep, 1000ms);
  EXPECT_THAT(watch.trouble(now), IsEmpty());
  tell(kAsleep, 125ms);
  EXPECT_THAT(watch.trouble(now), HasSubstr("nothing has moved in it for 1000 ms"));
}

TEST_F(Progress, ThreadsThatRunAreNone) {
  tell(kComputing, 60s);
  EXPECT_THAT(watch.trouble(now), IsEmpty());
  tell(kOtherThread, 60s);
  EXPECT_THAT(watch.trouble(now), IsEmpty());
  tell(kAsleep, 1000ms);
  tell(kComputing, 125ms);
  tell(kAsleep, 1000ms);
  EXPECT_THAT(watch.trouble(now), IsEmpty()) << "it began anew";
}

TEST_F(Progress, FewPulsesOnABusyMachineProveNothing) {
  tell(kAsleep, 2700ms, 900ms);
  EXPECT_THAT(watch.trouble(now), IsEmpty());
  tell(kAsleep, 900ms, 900ms);
  EXPECT_THAT(watch.trouble(now), HasSubstr("nothing has moved"));
}

TEST_F(Progress, TimeWithoutPulsesDoesNotCount) {
  tell(kAsleep, 1000ms);
  now += 10s;
  tell(kAsleep, 1000ms);
  EXPECT_THAT(watch.trouble(now), IsEmpty());
}

TEST_F(Progress, MuchProcessorTimeOfOneCallIsTrouble) {
  tell({.calls = {{7, 10'000'000, true}}}, 125ms);
  EXPECT_THAT(watch.trouble(now), IsEmpty());
  tell({.calls = {{7, 10'000'001, true}}}, 125ms);
  EXPECT_THAT(watch.trouble(now), HasSubstr("10000 ms of processor time"));
}

TEST_F(Progress, OneCallMaySleepBesideOthers) {
  tell(kComputing, 1125ms);
  EXPECT_TRUE(watch.isAsleep(8, now));
  EXPECT_FALSE(watch.isAsleep(7, now));
  EXPECT_FALSE(watch.isAsleep(9, now));
}

TEST_F(Progress, WhoDoesNotTellIsSilent) {
  ASSERT_TRUE(watch.wantsPulse(now));
  watch.asked(now);
  EXPECT_FALSE(watch.wantsPulse(now + 4s));
  EXPECT_FALSE(watch.isSilent(now + 5s));
  EXPECT_TRUE(watch.isSilent(now + 5001ms));
  watch.note(kAsleep, now + 5002ms);
  EXPECT_FALSE(watch.isSilent(now + 20s));
}

TEST(Pulses, ComeBackAsTheyWere) {
  const Pulse back = unpackPulse(pack({{{7, 1, true}, {UINT64_MAX, UINT64_MAX, false}}, true}));
  ASSERT_EQ(back.calls.size(), 2U);
  EXPECT_TRUE(back.othersAwake && back.anyAwake() && back.calls[0].awake && !back.calls[1].awake);
  EXPECT_EQ(back.calls[1].number, UINT64_MAX);
  EXPECT_EQ(back.calls[0].processorTime, 1U);
  EXPECT_FALSE(unpackPulse(pack({})).anyAwake());
  for (const auto& wrong : {packTexts({}), packTexts({"0", "1"}), packTexts({"x"}),
                            packTexts({"0", "1", "", "1"}), std::string("cut")}) {
    EXPECT_THROW(unpackPulse(wrong), FrameError);
  }
}

}  // namespace
}  // namespace ZebManager
