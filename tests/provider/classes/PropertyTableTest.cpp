#include <gtest/gtest.h>

#include "classes/port/PropertyTable.h"

namespace ZEB::test {
namespace {

struct Nothing {};
using P = Properties<Nothing>;

CmpiCpp::CmpiInstance filled(const PropertyRows<Nothing>& rows, CmpiCpp::CmpiInstance instance = {}) {
  Nothing nothing;
  rows.fill(instance, nothing);
  return instance;
}

TEST(PropertyTableTest, AddsItsRowsInOrder) {
  const auto instance = filled({P::uint8("First", constant(1)), P::uint8("Second", constant(2))});
  ASSERT_EQ(instance.properties().size(), 2U);
  EXPECT_EQ(instance.properties()[0].name, "First");
  EXPECT_EQ(instance.properties()[1].name, "Second");
}

TEST(PropertyTableTest, ANameThatComesTwiceKeepsItsPlaceAndGetsTheNewValue) {
  const auto instance = filled(
      {P::uint8("Level", constant(1)), P::uint8("Other", constant(2)), P::uint8("LEVEL", constant(3))});
  ASSERT_EQ(instance.properties().size(), 2U);
  EXPECT_EQ(instance.properties()[0].name, "Level");
  EXPECT_EQ(instance.properties()[0].value.asUnsigned(), 3U);
}

TEST(PropertyTableTest, WhatTheInstanceHasAlreadyGetsTheNewValue) {
  CmpiCpp::CmpiInstance before;
  before.addProperty("Level", std::uint8_t{1});
  const auto instance = filled({P::uint8("Level", constant(2))}, before);
  ASSERT_EQ(instance.properties().size(), 1U);
  EXPECT_EQ(instance.properties()[0].value.asUnsigned(), 2U);
}

/// The names of what a table adds when a client wants these alone.
std::vector<std::string> namesOf(const PropertyRows<Nothing>& rows, CmpiCpp::CmpiPropertyList wanted) {
  Nothing nothing;
  CmpiCpp::CmpiInstance instance;
  rows.fill(instance, nothing, wanted);
  std::vector<std::string> names;
  for (const auto& property : instance.properties()) names.push_back(property.name.str());
  return names;
}

TEST(PropertyTableTest, WhatNobodyWantsIsNotMadeAndStepsAreTaken) {
  int made = 0;
  int steps = 0;
  const PropertyRows<Nothing> rows{P::uint8(
                                       "Unwanted", [&made](Nothing&) { return ++made; }, always),
                                   P::step([&steps](Nothing&) { ++steps; }), P::uint8("Wanted", constant(2))};
  constexpr std::array wanted{"wanted", "Missing", static_cast<const char*>(nullptr)};
  EXPECT_EQ(namesOf(rows, wanted.data()), std::vector<std::string>{"Wanted"});
  EXPECT_EQ(made, 0);
  EXPECT_EQ(steps, 1);
}

TEST(PropertyTableTest, AWantedCopyHasWhatItCopies) {
  const PropertyRows<Nothing> rows{P::string("Name", constant("n")), P::uint8("Level", constant(1)),
                                   P::string("Caption", sameAs("Name"))};
  constexpr std::array wanted{"Caption", static_cast<const char*>(nullptr)};
  EXPECT_EQ(namesOf(rows, wanted.data()), std::vector<std::string>{"Caption"});
}

}  // namespace
}  // namespace ZEB::test
