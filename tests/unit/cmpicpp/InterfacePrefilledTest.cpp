#include "InterfaceFixture.h"

// What clients get from an object manager that begins an instance with what it knows of its class.

namespace CmpiCpp {
namespace {

using testing::ElementsAre;

class PrefillingTest : public InterfaceTest {
 protected:
  explicit PrefillingTest(const ZEB::test::Habits& habits = ZEB::test::kGroupHabits) : InterfaceTest(habits) {
    broker.declareDefaults("C", {{"A", std::uint16_t{200}},
                                 {"B", CmpiData("default")},
                                 {"EnabledState", std::uint16_t{5}},
                                 {"Codes", CmpiArray(2, CMPI_uint16)}});
  }

  static std::vector<std::string> namesOf(const CmpiInstance& instance) {
    std::vector<std::string> names;
    for (const auto& property : instance.properties()) names.push_back(property.name.str());
    return names;
  }

  const CmpiObjectPath path{"n", "C", "", {{"Id", "i"}}};
};

TEST_F(PrefillingTest, whatTheProviderDoesNotSayNobodySays) {
  const CmpiInstance instance = get(path, nullptr);
  EXPECT_THAT(namesOf(instance), ElementsAre("A", "B", "Id"));
  EXPECT_EQ(instance.getProperty("A"), CmpiData(std::uint16_t{1}));
  EXPECT_EQ(instance.getProperty("B"), CmpiData("b"));
  EXPECT_TRUE(broker.violations().empty()) << broker.violations().front();
}

TEST_F(PrefillingTest, aClientGetsWhatItsListNames) {
  const char* list[] = {"a", "NoSuchProperty", nullptr};
  const CmpiInstance instance = get(path, list);
  EXPECT_THAT(namesOf(instance), ElementsAre("A"));
  EXPECT_EQ(instance.getProperty("A"), CmpiData(std::uint16_t{1}));
  EXPECT_EQ(instance.path(), path) << "the keys are not lost";
}

TEST_F(PrefillingTest, aListThatNamesWhatTheProviderDoesNotSayGetsNoDefault) {
  const char* list[] = {"EnabledState", "B", nullptr};
  EXPECT_THAT(namesOf(get(path, list)), ElementsAre("B"));
}

TEST_F(PrefillingTest, anEmptyListGetsNothing) {
  const char* list[] = {nullptr};
  EXPECT_THAT(namesOf(get(path, list)), ElementsAre());
}

/// One that knows of no property lists.
class UnfilteredTest : public PrefillingTest {
 protected:
  UnfilteredTest() : PrefillingTest({.prefillsInstances = true, .filtersInstances = false}) {}
};

TEST_F(UnfilteredTest, showsKeysAndNoDefaults) {
  const char* list[] = {"A", nullptr};
  EXPECT_THAT(namesOf(get(path, list)), ElementsAre("A", "Id"));
}

}  // namespace
}  // namespace CmpiCpp
