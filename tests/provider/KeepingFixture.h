#pragma once

#include <memory>
#include <string>
#include <thread>

#include "StoresFixture.h"

namespace ZEB::test {

enum class Kept { Settings, Filters };

inline std::string nameOf(Kept kept) {
  return kept == Kept::Settings ? "settings" : "filters";
}

inline constexpr int kPorts = 16;

/// The plug-in is loaded by the test, in whatever process it wants. Public, for the tables of troubles.
class Keeping : public StoresTest {
 public:
  using StoresTest::directory;
  using StoresTest::include;
  using StoresTest::included;
  using StoresTest::modify;
  using StoresTest::only;
  using StoresTest::setting;
  using StoresTest::start;
  using StoresTest::stop;

  explicit Keeping(Kept kept) : StoresTest(kPorts), _kept(kept) {}

  std::string storeFile() const { return file(_kept == Kept::Settings ? kSettings : kFilters); }
  std::string key() { return _kept == Kept::Settings ? "PollInterval" : keyOf(2); }

  /// The n-th change. It undoes no other but the one before.
  CMPIrc put(std::uint32_t n) {
    return _kept == Kept::Settings ? set("PollInterval", n) : include(2, n % 2 == 0);
  }
  bool holds(std::uint32_t n) {
    return _kept == Kept::Settings ? setting("PollInterval") == CmpiCpp::CmpiData(n)
                                   : included(2) == (n % 2 == 0);
  }

  void startWith(std::uint32_t n) {
    start();
    ASSERT_EQ(put(n), CMPI_RC_OK);
    // The file's time stamp can tell a further change then.
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
    ASSERT_TRUE(holds(n));
    log->clear();
  }
  void changeAndRestart(std::uint32_t n) {
    ASSERT_EQ(put(n), CMPI_RC_OK);
    ASSERT_TRUE(holds(n));
    restart();
    ASSERT_TRUE(holds(n));
  }

  /// What the log has of trouble with the store.
  long lines() const {
    return std::ranges::count_if(log->lines(), [&](const RecordingLogSink::Line& line) {
      return line.level != LogLevel::Info && line.source == "DataStore" &&
             line.text.find(storeFile()) != std::string::npos;
    });
  }
  /// And of changes that were refused, with the reason.
  long refusals() const {
    return std::ranges::count_if(log->texts(), [&](const std::string& text) {
      return text.starts_with("::modifyInstance() exception: the store " + storeFile() + " cannot keep");
    });
  }

  std::unique_ptr<Locker> locker;

 private:
  const Kept _kept;
};

}  // namespace ZEB::test
