#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <functional>
#include <future>

#include "Machine.h"
#include "ProviderFixture.h"
#include "monitor/LinkWatch.h"
#include "provider/EntryPoints.h"
#include "support/Length.h"

// A cable is pulled and a client asks at every point of a pass that logs a line, which is every step of it.

namespace ZEB::test {
namespace {

/// Calls back once, before a line of its choice.
class HookedSink : public LogSink {
 public:
  void callAt(int line, std::function<void()> hook) {
    _left = line;
    _hook = std::move(hook);
  }
  /// Whether there was no such line.
  bool unused() const { return _left >= 0; }

  void write(LogLevel, std::string_view, std::string_view) override {
    if (_left >= 0 && _left-- == 0) _hook();
  }

 private:
  std::atomic<int> _left{-1};
  std::function<void()> _hook;
};

class Meeting : public ProviderTest {
 public:
  static void SetUpTestSuite() { setenv("TMPDIR", "/dev/shm", 1); }
  static void TearDownTestSuite() { unsetenv("TMPDIR"); }

 protected:
  Meeting() {
    for (int i = 0; i < 12; ++i) {
      machine.add(
          {.name = "eth" + std::to_string(i), .card = i, .addresses = {"10.0." + std::to_string(i) + ".1"}});
    }
    machine.play(file);
    configure("ZEB_LINK_SETTLE_SECONDS", "0");
    configure("ZEB_SOURCE_FILE", file.string());
    setProcessLogSink(sink, LogLevel::Info);
    FakeBroker::Call call(broker);
    instances = _Generic_Create_InstanceMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
    methods = _Generic_Create_MethodMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
    indications = _Generic_Create_IndicationMI(broker.get(), &call.context(), "ZEBEthernetPort", nullptr);
    call.enableIndications(indications);
  }
  ~Meeting() override {
    FakeBroker::Call call(broker);
    instances->ft->cleanup(instances, &call.context(), 1);
    methods->ft->cleanup(methods, &call.context(), 1);
    indications->ft->cleanup(indications, &call.context(), 1);
    _netlinkEvent = false;
  }

  void pass() {
    _netlinkEvent = true;
    FakeBroker::Call call(broker);
    const auto status = methods->ft->invokeMethod(methods, &call.context(), &call.result(),
                                                  call.path({"root/jxv", "ZEB_AutoStartEthernetPort"}),
                                                  "PerformWork", call.args(), call.args());
    EXPECT_EQ(status.rc, CMPI_RC_OK);
  }
  /// More endpoints than are asked for one by one.
  void request() {
    FakeBroker::Call call(broker);
    instances->ft->enumerateInstances(instances, &call.context(), &call.result(),
                                      call.path({"root/jxv", "ZEB_IPProtocolEndpoint"}), nullptr);
  }

  void flip(std::uint32_t number) {
    auto& port = machine.interfaces.at(number);
    port.carrier = !port.carrier;
  }

  std::filesystem::path file = folder / "machine.json";
  Machine machine;
  std::shared_ptr<HookedSink> sink = std::make_shared<HookedSink>();
  CMPIInstanceMI* instances;
  CMPIMethodMI* methods;
  CMPIIndicationMI* indications;
};

TEST_F(Meeting, OfARequestAndAPassLosesAndDoublesNothing) {
  std::size_t sent = 0;
  int meetings = 0;
  const auto [number, of] = shareOfManager();
  const int usual = length(7, 1);
  const int stride = usual * static_cast<int>(of);
  for (int line = usual * static_cast<int>(number);; line += stride) {
    // The pass has an alert of its own, and a rebuild.
    flip(5);
    auto& addresses = machine.interfaces.at(3).addresses;
    if (std::erase(addresses, "10.1.1.1") == 0) addresses.push_back("10.1.1.1");
    machine.play(file);
    std::future<void> asking;
    sink->callAt(line, [&] {
      flip(2);
      machine.play(file);
      asking = std::async(std::launch::async, [this] { request(); });
      // Where the pass holds the lock that a request needs, the request comes after it.
      asking.wait_for(std::chrono::milliseconds(20));
    });
    pass();
    if (sink->unused()) break;
    asking.get();
    ++meetings;
    pass();
    sent += 2;
    ASSERT_EQ(broker.deliveries().size(), sent) << "met at line " << line;
  }
  sink->callAt(-1, {});
  EXPECT_GT(meetings, 200 / stride);
}

}  // namespace
}  // namespace ZEB::test
