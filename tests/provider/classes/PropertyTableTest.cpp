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

}  // namespace
}  // namespace ZEB::test
