// Arenas, and the memory that providers get of them.
#include <gmock/gmock.h>

#include <cstdint>
#include <memory>

#include "BrokerFixture.h"

namespace ZebManager {
namespace {

TEST(Arena, KeepsWhatItGaveOutApart) {
  Arena arena;
  std::vector<std::string_view> texts;
  for (int i = 0; i < 20'000; ++i) texts.push_back(arena.copy("text " + std::to_string(i)));
  for (int i = 0; i < 20'000; ++i) ASSERT_EQ(texts[static_cast<std::size_t>(i)], "text " + std::to_string(i));
}

TEST(Arena, AlignsAndServesLargePieces) {
  Arena arena;
  arena.allocate(1, 1);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(arena.allocate(8, 8)) % 8, 0U);
  auto* large = static_cast<char*>(arena.allocate(10'000'000));
  std::memset(large, 1, 10'000'000);
  EXPECT_EQ(reinterpret_cast<std::uintptr_t>(arena.allocate(16)) % alignof(std::max_align_t), 0U);
}

TEST(Arena, GivesTheSameMemoryAgainAfterRelease) {
  Arena arena;
  arena.allocate(100);
  const void* const mark = arena.mark();
  void* const first = arena.allocate(100);
  for (int i = 0; i < 100; ++i) arena.allocate(10'000);
  EXPECT_TRUE(arena.marked());
  EXPECT_TRUE(arena.release(mark));
  EXPECT_FALSE(arena.marked());
  const void* const again = arena.mark();
  EXPECT_EQ(arena.allocate(100), first);
  EXPECT_TRUE(arena.release(again));
}

TEST(Arena, ReleasingAnOuterMarkEndsTheInnerOnes) {
  Arena arena;
  const void* const outer = arena.mark();
  const void* const inner = arena.mark();
  EXPECT_TRUE(arena.release(outer));
  EXPECT_FALSE(arena.release(inner));
  EXPECT_FALSE(arena.release(outer));
  EXPECT_FALSE(arena.release(nullptr));
}

TEST(Arena, ReusesItsBlocksRoundAfterRound) {
  Arena arena;
  const void* first = nullptr;
  for (int round = 0; round < 1000; ++round) {
    const void* const mark = arena.mark();
    const void* const piece = arena.allocate(5000);
    if (!first) first = piece;
    EXPECT_EQ(piece, first);
    arena.allocate(100'000);
    arena.release(mark);
  }
}

using BrokerMemory = BrokerFixture;

TEST_F(BrokerMemory, MarkAndReleaseTakeBackWhatIsInBetween) {
  const CMPIGcStat* mark = face->mft->mark(face, &status);
  ASSERT_NE(mark, nullptr);
  EXPECT_EQ(status.rc, CMPI_RC_OK);
  newString("gone");
  EXPECT_EQ(face->mft->release(face, mark).rc, CMPI_RC_OK);
  EXPECT_EQ(face->mft->release(face, mark).rc, CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(BrokerMemory, AllocatesLikeTheCLibrary) {
  auto* bytes = static_cast<char*>(face->mft->cmpiMalloc(face, 4));
  std::memcpy(bytes, "abc", 4);
  bytes = static_cast<char*>(face->mft->cmpiRealloc(face, bytes, 1000));
  EXPECT_STREQ(bytes, "abc");
  EXPECT_STREQ(static_cast<char*>(face->mft->cmpiRealloc(face, nullptr, 8)) ? "made" : "", "made");
  const auto* zeros = static_cast<const char*>(face->mft->cmpiCalloc(face, 10, 10));
  EXPECT_EQ(std::count(zeros, zeros + 100, '\0'), 100);
  EXPECT_STREQ(face->mft->cmpiStrDup(face, "copy"), "copy");
  EXPECT_EQ(face->mft->cmpiStrDup(face, nullptr), nullptr);
  EXPECT_EQ(face->mft->cmpiMalloc(face, SIZE_MAX), nullptr);
  EXPECT_EQ(face->mft->cmpiCalloc(face, SIZE_MAX, 2), nullptr);
}

TEST_F(BrokerMemory, FreeingEarlyIsHarmless) {
  CMPIString* string = newString("still here");
  face->mft->freeString(face, string);
  EXPECT_EQ(text(string), "still here");
  face->mft->cmpiFree(face, face->mft->cmpiMalloc(face, 1));
  face->mft->freeChars(face, face->mft->cmpiStrDup(face, "x"));
  face->mft->freeInstance(face, newInstance());
  face->mft->freeObjectPath(face, newPath());
  face->mft->freeArgs(face, face->eft->newArgs(face, nullptr));
  face->mft->freeArray(face, face->eft->newArray(face, 1, CMPI_uint8, nullptr));
  face->mft->freeDateTime(face, face->eft->newDateTime(face, nullptr));
  face->mft->freeSelectExp(face, nullptr);
}

TEST(OutsideOfCalls, NothingCanBeMade) {
  const ClassRepository repository = ClassRepository::fromText(kTestSchema, "test.mof");
  Broker broker(repository);
  const CMPIBroker* face = broker.face();
  CMPIStatus status = {CMPI_RC_OK, nullptr};
  EXPECT_EQ(face->eft->newString(face, "x", &status), nullptr);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_FAILED);
  EXPECT_EQ(face->eft->newObjectPath(face, "n", "c", &status), nullptr);
  EXPECT_EQ(face->eft->newArgs(face, &status), nullptr);
  EXPECT_EQ(face->mft->mark(face, &status), nullptr);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_FAILED);
  EXPECT_EQ(face->mft->release(face, nullptr).rc, CMPI_RC_ERR_FAILED);
  EXPECT_EQ(face->mft->cmpiMalloc(face, 1), nullptr);
}

TEST_F(BrokerMemory, AClonedObjectOutlivesTheCall) {
  CMPIObjectPath* kept = nullptr;
  {
    Arena other;
    const ArenaScope inner(other);
    CMPIObjectPath* path = newPath("A_Port", "kept");
    kept = path->ft->clone(path, &status);
    EXPECT_EQ(status.rc, CMPI_RC_OK);
  }
  EXPECT_EQ(text(kept), "root/jxv:A_Port.Name=\"kept\"");
  EXPECT_EQ(kept->ft->release(kept).rc, CMPI_RC_OK);
}

}  // namespace
}  // namespace ZebManager
