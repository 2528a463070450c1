#include <gmock/gmock.h>

#include "KeepingFixture.h"
#include "support/Length.h"

// Files that are damaged or cut anywhere, and other processes that write, while the plug-in works.

namespace ZEB::test {
namespace {

namespace fs = std::filesystem;

class KeptInDamageTest : public Keeping, public testing::WithParamInterface<Kept> {
 protected:
  KeptInDamageTest() : Keeping(GetParam()) {}

  /// Changes the file in that way while the plug-in works with it, again and again.
  void damage(std::size_t from, std::size_t step, void (*spoil)(const std::string& file, std::size_t place)) {
    start();
    std::uint32_t n = 0;
    for (std::size_t place = from; place < fs::file_size(storeFile()); place += step) {
      ASSERT_EQ(put(++n), CMPI_RC_OK);
      log->clear();
      spoil(storeFile(), place);
      ASSERT_TRUE(holds(n)) << place;
      changeAndRestart(++n);
      if (HasFatalFailure()) FAIL() << place;
      // What nobody reads may be spoilt without a word.
      ASSERT_LE(lines(), 1) << place;
    }
    stop();
  }
};

INSTANTIATE_TEST_SUITE_P(Stores, KeptInDamageTest, testing::Values(Kept::Settings, Kept::Filters),
                         [](const auto& row) { return nameOf(row.param); });

TEST_P(KeptInDamageTest, losesNothingWhenAByteIsDamagedWhileItIsOpen) {
  damage(0, static_cast<std::size_t>(length(211, 1)), [](const std::string& file, std::size_t place) {
    std::fstream bytes(file, std::ios::in | std::ios::out | std::ios::binary);
    bytes.seekg(static_cast<std::streamoff>(place));
    const char byte = static_cast<char>(~bytes.get());
    bytes.seekp(static_cast<std::streamoff>(place));
    bytes.put(byte);
  });
}

TEST_P(KeptInDamageTest, losesNothingWhenTheFileIsCutWhileItIsOpen) {
  damage(0, static_cast<std::size_t>(length(509, 16)),
         [](const std::string& file, std::size_t place) { fs::resize_file(file, place); });
}

TEST_P(KeptInDamageTest, losesNothingBesideAnotherProcessThatWrites) {
  startWith(0);
  const std::string store = GetParam() == Kept::Settings ? kSettings : kFilters;
  ChildProcess other = setInStore(store, "MaxFloodLevel", 1, 100);
  for (std::uint32_t n = 1; n <= 20; ++n) {
    ASSERT_EQ(put(n), CMPI_RC_OK);
    ASSERT_TRUE(holds(n));
  }
  ASSERT_EQ(other.wait(), 0);
  EXPECT_EQ(makeDataStore(store)->getUInt32("MaxFloodLevel"), 100u);
  setElsewhere(store.c_str(), key(), 21 % 2 == 0);
  EXPECT_TRUE(GetParam() == Kept::Settings ? holds(0) : holds(21));
  changeAndRestart(22);
  EXPECT_EQ(lines(), 0);
  EXPECT_EQ(refusals(), 0);
  stop();
}

}  // namespace
}  // namespace ZEB::test
