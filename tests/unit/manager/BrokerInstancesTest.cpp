// Every slot of the instances that a provider gets from the broker.
#include <limits>

#include "BrokerFixture.h"

namespace ZebManager {
namespace {

using testing::ElementsAre;

using Instances = BrokerFixture;

TEST_F(Instances, HoldNothingThatWasNotSet) {
  CMPIInstance* instance = newInstance();
  EXPECT_EQ(instance->ft->getPropertyCount(instance, &status), 0U);
  instance->ft->getProperty(instance, "Name", &status);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

TEST_F(Instances, KeepPropertiesInTheOrderInWhichTheyCame) {
  CMPIInstance* instance = newInstance();
  const CMPIValue value = uint16Value(5);
  instance->ft->setProperty(instance, "small", &value, CMPI_uint16);
  instance->ft->setProperty(instance, "Name", reinterpret_cast<const CMPIValue*>("one"), CMPI_chars);
  const CMPIValue other = uint16Value(6);
  instance->ft->setProperty(instance, "Small", &other, CMPI_uint16);
  EXPECT_EQ(instance->ft->getPropertyCount(instance, &status), 2U);
  CMPIString* name = nullptr;
  EXPECT_EQ(instance->ft->getPropertyAt(instance, 0, &name, &status).value.uint16, 6);
  EXPECT_EQ(text(name), "small");
  EXPECT_EQ(text(instance->ft->getPropertyAt(instance, 1, &name, &status)), "one");
  EXPECT_EQ(text(name), "Name");
  instance->ft->getPropertyAt(instance, 2, &name, &status);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_FOUND);
}

struct TypeCase {
  const char* property;
  CMPIType type;
};

/// For each type a property that takes it; every other combination is refused.
TEST_F(Instances, TakeValuesOfTheDeclaredTypeOnly) {
  const std::vector<TypeCase> cases = {
      {"Name", CMPI_string},
      {"Flag", CMPI_boolean},
      {"Tiny", CMPI_uint8},
      {"Small", CMPI_uint16},
      {"Medium", CMPI_uint32},
      {"Large", CMPI_uint64},
      {"Low", CMPI_sint8},
      {"Lowest", CMPI_sint64},
      {"Single", CMPI_real32},
      {"Double", CMPI_real64},
      {"Letter", CMPI_char16},
      {"When", CMPI_dateTime},
      {"Texts", CMPI_string | CMPI_ARRAY},
      {"Numbers", CMPI_uint16 | CMPI_ARRAY},
  };
  for (const TypeCase& target : cases) {
    for (const TypeCase& given : cases) {
      CMPIInstance* instance = newInstance();
      CMPIValue value{};
      if (given.type == CMPI_string) value.string = newString("x");
      if (given.type == CMPI_dateTime) value.dateTime = face->eft->newDateTime(face, nullptr);
      if (given.type & CMPI_ARRAY) {
        value.array = face->eft->newArray(face, 1, given.type & ~CMPI_ARRAY, nullptr);
      }
      const CMPIStatus set = instance->ft->setProperty(instance, target.property, &value, given.type);
      const bool same = target.type == given.type;
      EXPECT_EQ(set.rc, same ? CMPI_RC_OK : CMPI_RC_ERR_INVALID_DATA_TYPE)
          << target.property << given.property;
      EXPECT_EQ(instance->ft->getPropertyCount(instance, nullptr), same ? 1U : 0U);
    }
  }
}

TEST_F(Instances, ARefusalSaysWhatIsWrong) {
  CMPIInstance* instance = newInstance();
  const CMPIValue value = uint16Value(5);
  EXPECT_EQ(text(instance->ft->setProperty(instance, "Large", &value, CMPI_uint16).msg),
            "A_Port.Large is uint64, not uint16");
  const CMPIStatus unknown = instance->ft->setProperty(instance, "None", &value, CMPI_uint16);
  EXPECT_THAT(broker.refusals().take(),
              ElementsAre("A_Port.Large is uint64, not uint16", "A_Port has no property None"));
  EXPECT_THAT(broker.refusals().take(), ElementsAre());
  EXPECT_EQ(unknown.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  EXPECT_EQ(text(unknown.msg), "A_Port has no property None");
  EXPECT_EQ(instance->ft->setProperty(instance, nullptr, &value, CMPI_uint16).rc,
            CMPI_RC_ERR_INVALID_PARAMETER);
}

TEST_F(Instances, AnArrayWhoseElementsAreOfAnotherTypeIsRefused) {
  CMPIInstance* instance = newInstance();
  CMPIValue value{};
  value.array = face->eft->newArray(face, 1, CMPI_uint8, nullptr);
  EXPECT_EQ(instance->ft->setProperty(instance, "Numbers", &value, CMPI_uint16 | CMPI_ARRAY).rc,
            CMPI_RC_ERR_INVALID_DATA_TYPE);
}

TEST_F(Instances, NullsKeepTheDeclaredType) {
  CMPIInstance* instance = newInstance();
  EXPECT_EQ(instance->ft->setProperty(instance, "Name", nullptr, CMPI_string).rc, CMPI_RC_OK);
  EXPECT_EQ(instance->ft->setProperty(instance, "Small", nullptr, CMPI_null).rc, CMPI_RC_OK);
  CMPIValue value{};
  EXPECT_EQ(instance->ft->setProperty(instance, "Texts", &value, CMPI_string | CMPI_ARRAY).rc, CMPI_RC_OK);
  for (CMPICount i = 0; i < 3; ++i) {
    EXPECT_EQ(instance->ft->getPropertyAt(instance, i, nullptr, &status).state, CMPI_nullValue);
  }
  EXPECT_EQ(instance->ft->getProperty(instance, "Small", &status).type, CMPI_uint16);
  EXPECT_EQ(instance->ft->setProperty(instance, "Small", nullptr, CMPI_string).rc,
            CMPI_RC_ERR_INVALID_DATA_TYPE);
}

TEST_F(Instances, WhatWasPassedCanBeChangedAfterwards) {
  CMPIInstance* instance = newInstance();
  CMPIArray* array = face->eft->newArray(face, 1, CMPI_uint16, nullptr);
  const CMPIValue before = uint16Value(1);
  array->ft->setElementAt(array, 0, &before, CMPI_uint16);
  CMPIValue value{};
  value.array = array;
  instance->ft->setProperty(instance, "Numbers", &value, CMPI_uint16 | CMPI_ARRAY);
  const CMPIValue after = uint16Value(2);
  array->ft->setElementAt(array, 0, &after, CMPI_uint16);
  const CMPIArray* held = instance->ft->getProperty(instance, "Numbers", nullptr).value.array;
  EXPECT_EQ(held->ft->getElementAt(held, 0, nullptr).value.uint16, 1);
  EXPECT_EQ(array->ft->getElementAt(array, 0, nullptr).value.uint16, 2);
}

TEST_F(Instances, TextWithALengthIsTaken) {
  CMPIInstance* instance = newInstance();
  char letters[] = {'a', 'b', 'c'};
  CMPIValue value{};
  value.dataPtr = {letters, 2};
  EXPECT_EQ(instance->ft->setProperty(instance, "Name", &value, CMPI_charsptr).rc, CMPI_RC_OK);
  EXPECT_EQ(text(instance->ft->getProperty(instance, "Name", nullptr)), "ab");
}

TEST_F(Instances, KnowTheirPath) {
  CMPIObjectPath* path = newPath("A_Port", "one");
  CMPIInstance* instance = face->eft->newInstance(face, path, &status);
  path->ft->setHostname(path, "later");
  EXPECT_EQ(text(instance->ft->getObjectPath(instance, &status)), "root/jxv:A_Port.Name=\"one\"");
  CMPIObjectPath* mine = instance->ft->getObjectPath(instance, &status);
  mine->ft->setHostname(mine, "mine");
  EXPECT_EQ(text(instance->ft->getObjectPath(instance, &status)), "root/jxv:A_Port.Name=\"one\"");
  EXPECT_EQ(instance->ft->setObjectPath(instance, newPath("A_Port", "two")).rc, CMPI_RC_OK);
  EXPECT_EQ(text(instance->ft->getObjectPath(instance, &status)), "root/jxv:A_Port.Name=\"two\"");
  EXPECT_EQ(instance->ft->setObjectPath(instance, newPath("A_Other", "two")).rc,
            CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_EQ(instance->ft->setObjectPath(instance, nullptr).rc, CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(Instances, AFilterLetsOnlyItsNamesAndKeysIn) {
  CMPIInstance* instance = newInstance();
  const char* names[] = {"sMALL", nullptr};
  EXPECT_EQ(instance->ft->setPropertyFilter(instance, names, nullptr).rc, CMPI_RC_OK);
  const CMPIValue value = uint16Value(5);
  EXPECT_EQ(instance->ft->setProperty(instance, "Small", &value, CMPI_uint16).rc, CMPI_RC_OK);
  EXPECT_EQ(instance->ft->setProperty(instance, "Flag", &value, CMPI_boolean).rc, CMPI_RC_OK);
  EXPECT_EQ(
      instance->ft->setProperty(instance, "Name", reinterpret_cast<const CMPIValue*>("x"), CMPI_chars).rc,
      CMPI_RC_OK);
  EXPECT_EQ(instance->ft->getPropertyCount(instance, nullptr), 2U);
  instance->ft->setPropertyFilter(instance, nullptr, nullptr);
  instance->ft->setProperty(instance, "Flag", &value, CMPI_boolean);
  EXPECT_EQ(instance->ft->getPropertyCount(instance, nullptr), 3U);
}

TEST_F(Instances, AnOriginChangesNothing) {
  CMPIInstance* instance = newInstance();
  const CMPIValue value = uint16Value(5);
  EXPECT_EQ(instance->ft->setPropertyWithOrigin(instance, "Small", &value, CMPI_uint16, "A_Base").rc,
            CMPI_RC_OK);
  EXPECT_EQ(instance->ft->getProperty(instance, "Small", nullptr).value.uint16, 5);
}

TEST_F(Instances, AnUnknownClassHasNone) {
  EXPECT_EQ(face->eft->newInstance(face, newPath("A_None"), &status), nullptr);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_FOUND);
  EXPECT_EQ(text(status.msg), "no such class: A_None");
  EXPECT_EQ(face->eft->newInstance(face, nullptr, &status), nullptr);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(Instances, ACloneHoldsEverythingByItself) {
  CMPIInstance* clone = nullptr;
  {
    Arena own;
    const ArenaScope inner(own);
    CMPIInstance* instance = newInstance();
    CMPIValue value{};
    value.array = face->eft->newArray(face, 1, CMPI_string, nullptr);
    value.array->ft->setElementAt(value.array, 0, reinterpret_cast<const CMPIValue*>("deep"), CMPI_chars);
    instance->ft->setProperty(instance, "Texts", &value, CMPI_string | CMPI_ARRAY);
    value.dateTime = face->eft->newDateTimeFromBinary(face, 5, 1, nullptr);
    instance->ft->setProperty(instance, "When", &value, CMPI_dateTime);
    clone = instance->ft->clone(instance, &status);
  }
  const CMPIArray* texts = clone->ft->getProperty(clone, "Texts", nullptr).value.array;
  EXPECT_EQ(text(texts->ft->getElementAt(texts, 0, nullptr)), "deep");
  const CMPIDateTime* when = clone->ft->getProperty(clone, "When", nullptr).value.dateTime;
  EXPECT_EQ(when->ft->getBinaryFormat(when, nullptr), 5U);
  const CMPIValue value = uint16Value(3);
  EXPECT_EQ(clone->ft->setProperty(clone, "Small", &value, CMPI_uint16).rc, CMPI_RC_OK);
  EXPECT_EQ(text(clone->ft->getObjectPath(clone, nullptr)), "root/jxv:A_Port.Name=\"one\"");
  EXPECT_EQ(clone->ft->release(clone).rc, CMPI_RC_OK);
}

}  // namespace
}  // namespace ZebManager
