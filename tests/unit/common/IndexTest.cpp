#include <gmock/gmock.h>

#include "common/ClassAncestry.h"
#include "common/HashIndex.h"
#include "common/ZEBUtil.h"
#include "support/FakeBroker.h"

namespace ZEB {
namespace {

std::vector<std::uint32_t> found(HashIndex& index, std::size_t hash) {
  std::vector<std::uint32_t> numbers;
  for (const auto& entry : index.find(hash)) numbers.push_back(entry.number);
  return numbers;
}

TEST(HashIndexTest, findsNothingWhereNothingIs) {
  HashIndex index;
  EXPECT_TRUE(found(index, 1).empty());
  index.add(2, 0);
  EXPECT_TRUE(found(index, 1).empty());
  EXPECT_TRUE(found(index, 3).empty());
}

TEST(HashIndexTest, keepsTheOrderOfAddingWhateverComesBetween) {
  HashIndex index;
  index.add(7, 0);
  index.add(3, 1);
  index.add(7, 2);
  EXPECT_THAT(found(index, 7), testing::ElementsAre(0, 2));
  index.add(7, 3);
  index.add(1, 4);
  EXPECT_THAT(found(index, 7), testing::ElementsAre(0, 2, 3));
  EXPECT_THAT(found(index, 3), testing::ElementsAre(1));
  EXPECT_THAT(found(index, 1), testing::ElementsAre(4));
}

TEST(HashIndexTest, keepsTheOrderOfManyOfOneHash) {
  HashIndex index;
  std::vector<std::uint32_t> odd, even;
  for (std::uint32_t number = 0; number < 1000; ++number) {
    index.add(number % 2 == 0 ? 7 : 3, number);
    (number % 2 == 0 ? even : odd).push_back(number);
  }
  EXPECT_EQ(found(index, 3), odd);
  EXPECT_EQ(found(index, 7), even);
}

TEST(HashIndexTest, tellsHashesApartByBothHalves) {
  HashIndex index;
  index.add(0x0000000100000000, 0);
  index.add(0x0000000000000002, 1);
  EXPECT_THAT(found(index, 0x0000000100000000), testing::ElementsAre(0));
  EXPECT_THAT(found(index, 0x0000000000000002), testing::ElementsAre(1));
}

TEST(HashIndexTest, hasANumberOnceThatIsAddedTwiceInARow) {
  HashIndex index;
  index.add(7, 0);
  index.add(7, 1);
  index.add(7, 1);
  index.add(0x700000000, 1);  // folds to 7 too
  EXPECT_THAT(found(index, 7), testing::ElementsAre(0, 1));
}

TEST(HashIndexTest, isEmptyWhenCleared) {
  HashIndex index;
  index.add(7, 0);
  index.clear();
  EXPECT_TRUE(found(index, 7).empty());
  index.add(7, 5);
  EXPECT_THAT(found(index, 7), testing::ElementsAre(5));
}

class ClassAncestryTest : public testing::Test {
 protected:
  ClassAncestryTest() {
    broker.declareClass("Port", "Device");
    broker.declareClass("Device", "Element");
    ZEBUtil::setBroker(broker.handle());
  }
  ~ClassAncestryTest() override { ZEBUtil::setBroker(CmpiCpp::CmpiBroker()); }

  test::FakeBroker broker;
  test::FakeBroker::Call call{broker};
  ClassAncestry ancestry;
};

TEST_F(ClassAncestryTest, eachPairIsAskedForOnce) {
  for (int i = 0; i < 3; ++i) {
    EXPECT_TRUE(ancestry.isA("n", "Port", "Element"));
    EXPECT_TRUE(ancestry.isA("n", "PORT", "element"));
    EXPECT_FALSE(ancestry.isA("n", "Port", "Other"));
  }
  EXPECT_EQ(broker.ancestryQuestions(), 2);
}

TEST_F(ClassAncestryTest, aClassIsItselfWithoutAsking) {
  EXPECT_TRUE(ancestry.isA("n", "Port", "port"));
  EXPECT_EQ(broker.ancestryQuestions(), 0);
}

TEST_F(ClassAncestryTest, inventedClassesDoNotFillTheMemory) {
  EXPECT_TRUE(ancestry.isA("n", "Port", "Device"));
  for (int i = 0; i < 1000; ++i) EXPECT_FALSE(ancestry.isA("n", "Port", "Invented" + std::to_string(i)));
  EXPECT_TRUE(ancestry.isA("n", "Port", "Device"));
  EXPECT_EQ(broker.ancestryQuestions(), 1002) << "what was known at first has made room";
}

}  // namespace
}  // namespace ZEB
