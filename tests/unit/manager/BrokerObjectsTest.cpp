// Every slot of the objects that a provider gets from the broker.
#include <limits>

#include "BrokerFixture.h"

namespace ZebManager {
namespace {

using testing::ElementsAre;

using Strings = BrokerFixture;
using DateTimes = BrokerFixture;
using Arrays = BrokerFixture;
using Paths = BrokerFixture;
using Instances = BrokerFixture;
using Arguments = BrokerFixture;
using Contexts = BrokerFixture;
using Results = BrokerFixture;
using Enumerations = BrokerFixture;
using Filters = BrokerFixture;

TEST_F(Strings, HoldTheirTextAndCanBeCloned) {
  CMPIString* string = newString("text");
  EXPECT_STREQ(string->ft->getCharPtr(string, &status), "text");
  CMPIString* clone = string->ft->clone(string, &status);
  EXPECT_EQ(text(clone), "text");
  EXPECT_EQ(clone->ft->release(clone).rc, CMPI_RC_OK);
  EXPECT_EQ(string->ft->release(string).rc, CMPI_RC_OK);
  EXPECT_EQ(text(string), "text");
  EXPECT_EQ(text(newString(nullptr)), "");
  EXPECT_EQ(string->ft->newCharsCP(string, "latin1", &status), nullptr);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
}

TEST_F(Strings, AStrangeHandleIsRefused) {
  const CMPIStringFT foreign = kStringFT;
  CMPIString strange = {nullptr, &foreign};
  EXPECT_EQ(kStringFT.getCharPtr(&strange, &status), nullptr);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_HANDLE);
  EXPECT_EQ(kStringFT.release(&strange).rc, CMPI_RC_ERR_INVALID_HANDLE);
  EXPECT_EQ(kStringFT.clone(nullptr, &status), nullptr);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(DateTimes, TellTimeAndIntervalApart) {
  CMPIDateTime* time = face->eft->newDateTimeFromBinary(face, 1'000'000, 0, &status);
  EXPECT_EQ(time->ft->getBinaryFormat(time, &status), 1'000'000U);
  EXPECT_FALSE(time->ft->isInterval(time, &status));
  EXPECT_EQ(text(time->ft->getStringFormat(time, &status)), "19700101000001.000000+000");
  CMPIDateTime* interval = face->eft->newDateTimeFromBinary(face, 1'000'000, 1, &status);
  EXPECT_TRUE(interval->ft->isInterval(interval, &status));
  EXPECT_EQ(text(interval->ft->getStringFormat(interval, &status)), "00000000000001.000000:000");
  CMPIDateTime* clone = interval->ft->clone(interval, &status);
  EXPECT_EQ(clone->ft->getBinaryFormat(clone, &status), 1'000'000U);
  clone->ft->release(clone);
}

TEST_F(DateTimes, AreMadeFromTextAndFromTheClock) {
  CMPIDateTime* parsed = face->eft->newDateTimeFromChars(face, "19700101000001.000000+000", &status);
  EXPECT_EQ(parsed->ft->getBinaryFormat(parsed, &status), 1'000'000U);
  EXPECT_EQ(face->eft->newDateTimeFromChars(face, "yesterday", &status), nullptr);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_PARAMETER);
  CMPIDateTime* now = face->eft->newDateTime(face, &status);
  EXPECT_GT(now->ft->getBinaryFormat(now, &status), 1'600'000'000'000'000U);
  EXPECT_FALSE(now->ft->isInterval(now, &status));
}

TEST_F(Arrays, StartWithNullElementsOfTheirType) {
  CMPIArray* array = face->eft->newArray(face, 2, CMPI_uint16, &status);
  EXPECT_EQ(array->ft->getSize(array, &status), 2U);
  EXPECT_EQ(array->ft->getSimpleType(array, &status), CMPI_uint16);
  const CMPIData element = array->ft->getElementAt(array, 1, &status);
  EXPECT_EQ(element.type, CMPI_uint16);
  EXPECT_EQ(element.state, CMPI_nullValue);
}

TEST_F(Arrays, TakeElementsOfTheirTypeOnly) {
  CMPIArray* array = face->eft->newArray(face, 1, CMPI_uint16, &status);
  const CMPIValue value = uint16Value(7);
  EXPECT_EQ(array->ft->setElementAt(array, 0, &value, CMPI_uint32).rc, CMPI_RC_ERR_INVALID_DATA_TYPE);
  EXPECT_EQ(array->ft->setElementAt(array, 1, &value, CMPI_uint16).rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  EXPECT_EQ(array->ft->setElementAt(array, 0, &value, CMPI_uint16).rc, CMPI_RC_OK);
  EXPECT_EQ(array->ft->getElementAt(array, 0, &status).value.uint16, 7);
  EXPECT_EQ(array->ft->setElementAt(array, 0, nullptr, CMPI_uint16).rc, CMPI_RC_OK);
  EXPECT_EQ(array->ft->getElementAt(array, 0, &status).state, CMPI_nullValue);
  array->ft->getElementAt(array, 1, &status);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NO_SUCH_PROPERTY);
}

TEST_F(Arrays, OfStringsTakeCStrings) {
  CMPIArray* array = face->eft->newArray(face, 1, CMPI_chars, &status);
  EXPECT_EQ(array->ft->getSimpleType(array, &status), CMPI_string);
  EXPECT_EQ(array->ft->setElementAt(array, 0, reinterpret_cast<const CMPIValue*>("text"), CMPI_chars).rc,
            CMPI_RC_OK);
  EXPECT_EQ(text(array->ft->getElementAt(array, 0, &status)), "text");
}

TEST_F(Arrays, OfNoTypeAreRefused) {
  EXPECT_EQ(face->eft->newArray(face, 1, CMPI_null, &status), nullptr);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_DATA_TYPE);
  EXPECT_EQ(face->eft->newArray(face, 1, CMPI_uint16 | CMPI_ARRAY, &status), nullptr);
}

TEST_F(Arrays, ACloneIsIndependent) {
  CMPIArray* array = face->eft->newArray(face, 1, CMPI_uint16, &status);
  CMPIArray* clone = array->ft->clone(array, &status);
  const CMPIValue value = uint16Value(7);
  clone->ft->setElementAt(clone, 0, &value, CMPI_uint16);
  EXPECT_EQ(array->ft->getElementAt(array, 0, &status).state, CMPI_nullValue);
  EXPECT_EQ(clone->ft->getElementAt(clone, 0, &status).value.uint16, 7);
  clone->ft->release(clone);
}

TEST_F(Paths, KeepNamesAndKeys) {
  CMPIObjectPath* path = newPath("A_Port", "one");
  EXPECT_EQ(text(path->ft->getNameSpace(path, &status)), "root/jxv");
  EXPECT_EQ(text(path->ft->getClassName(path, &status)), "A_Port");
  EXPECT_EQ(text(path->ft->getHostname(path, &status)), "");
  path->ft->setHostname(path, "server");
  path->ft->setNameSpace(path, "other");
  path->ft->setClassName(path, "A_SubPort");
  EXPECT_EQ(text(path), "//server/other:A_SubPort.Name=\"one\"");
  EXPECT_EQ(path->ft->getKeyCount(path, &status), 1U);
  const CMPIData key = path->ft->getKey(path, "nAME", &status);
  EXPECT_EQ(text(key), "one");
  EXPECT_EQ(key.type, CMPI_string);
  EXPECT_EQ(key.state, CMPI_keyValue);
  CMPIString* name = nullptr;
  EXPECT_EQ(text(path->ft->getKeyAt(path, 0, &name, &status)), "one");
  EXPECT_EQ(text(name), "Name");
  path->ft->getKeyAt(path, 1, nullptr, &status);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_FOUND);
  path->ft->getKey(path, "None", &status);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_FOUND);
}

TEST_F(Paths, AKeySetTwiceIsReplacedInItsPlace) {
  CMPIObjectPath* path = newPath("A_Port", "one");
  const CMPIValue value = uint16Value(5);
  path->ft->addKey(path, "Number", &value, CMPI_uint16);
  path->ft->addKey(path, "NAME", reinterpret_cast<const CMPIValue*>("two"), CMPI_chars);
  EXPECT_EQ(text(path), "root/jxv:A_Port.Name=\"two\",Number=5");
}

TEST_F(Paths, KeysAreScalarsThatAreThere) {
  CMPIObjectPath* path = newPath();
  CMPIValue value{};
  value.array = face->eft->newArray(face, 1, CMPI_uint16, nullptr);
  EXPECT_EQ(path->ft->addKey(path, "K", &value, CMPI_uint16 | CMPI_ARRAY).rc, CMPI_RC_ERR_INVALID_DATA_TYPE);
  EXPECT_EQ(path->ft->addKey(path, "K", nullptr, CMPI_string).rc, CMPI_RC_ERR_INVALID_DATA_TYPE);
  EXPECT_EQ(path->ft->addKey(path, nullptr, &value, CMPI_uint16).rc, CMPI_RC_ERR_INVALID_PARAMETER);
  EXPECT_EQ(path->ft->addKey(path, "K", &value, 4711).rc, CMPI_RC_ERR_INVALID_DATA_TYPE);
  EXPECT_EQ(path->ft->getKeyCount(path, nullptr), 0U);
}

TEST_F(Paths, AReferenceKeyIsACopy) {
  CMPIObjectPath* end = newPath("A_Port", "one");
  CMPIObjectPath* link = newPath("A_Link");
  CMPIValue value{};
  value.ref = end;
  link->ft->addKey(link, "One", &value, CMPI_ref);
  end->ft->setHostname(end, "changed");
  EXPECT_EQ(text(link), R"(root/jxv:A_Link.One="root/jxv:A_Port.Name=\"one\"")");
}

TEST_F(Paths, HostAndNamespaceCanComeFromAnother) {
  CMPIObjectPath* source = newPath();
  source->ft->setHostname(source, "server");
  source->ft->setNameSpace(source, "elsewhere");
  CMPIObjectPath* path = newPath();
  EXPECT_EQ(path->ft->setNameSpaceFromObjectPath(path, source).rc, CMPI_RC_OK);
  EXPECT_EQ(text(path), "elsewhere:A_Port");
  EXPECT_EQ(path->ft->setHostAndNameSpaceFromObjectPath(path, source).rc, CMPI_RC_OK);
  EXPECT_EQ(text(path), "//server/elsewhere:A_Port");
  EXPECT_EQ(path->ft->setHostAndNameSpaceFromObjectPath(path, nullptr).rc, CMPI_RC_ERR_INVALID_HANDLE);
}

TEST_F(Paths, QualifiersAreNotOffered) {
  CMPIObjectPath* path = newPath();
  path->ft->getClassQualifier(path, "Abstract", &status);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
  path->ft->getPropertyQualifier(path, "Name", "Key", &status);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
  path->ft->getMethodQualifier(path, "M", "Static", &status);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
  path->ft->getParameterQualifier(path, "M", "P", "In", &status);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
}

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

TEST_F(Arguments, AreNamedValuesOfAnyType) {
  CMPIArgs* args = face->eft->newArgs(face, &status);
  const CMPIValue value = uint16Value(5);
  EXPECT_EQ(args->ft->addArg(args, "Number", &value, CMPI_uint16).rc, CMPI_RC_OK);
  EXPECT_EQ(args->ft->addArg(args, "Text", reinterpret_cast<const CMPIValue*>("x"), CMPI_chars).rc,
            CMPI_RC_OK);
  EXPECT_EQ(args->ft->getArgCount(args, &status), 2U);
  EXPECT_EQ(args->ft->getArg(args, "number", &status).value.uint16, 5);
  CMPIString* name = nullptr;
  EXPECT_EQ(text(args->ft->getArgAt(args, 1, &name, &status)), "x");
  EXPECT_EQ(text(name), "Text");
  args->ft->getArg(args, "None", &status);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_FOUND);
  args->ft->getArgAt(args, 2, nullptr, &status);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_FOUND);
  EXPECT_EQ(args->ft->addArg(args, "", &value, CMPI_uint16).rc, CMPI_RC_ERR_INVALID_PARAMETER);
  CMPIArgs* clone = args->ft->clone(args, &status);
  EXPECT_EQ(clone->ft->getArgCount(clone, nullptr), 2U);
  clone->ft->release(clone);
}

TEST_F(Contexts, CarryEntries) {
  CMPIContext* context = makeCallContext(arena, "root/jxv");
  EXPECT_EQ(context->ft->getEntryCount(context, &status), 2U);
  EXPECT_EQ(text(context->ft->getEntry(context, CMPIInitNameSpace, &status)), "root/jxv");
  EXPECT_EQ(context->ft->getEntry(context, CMPIInvocationFlags, &status).type, CMPI_uint32);
  EXPECT_EQ(context->ft->addEntry(context, "Mine", reinterpret_cast<const CMPIValue*>("x"), CMPI_chars).rc,
            CMPI_RC_OK);
  CMPIString* name = nullptr;
  EXPECT_EQ(text(context->ft->getEntryAt(context, 2, &name, &status)), "x");
  EXPECT_EQ(text(name), "Mine");
  context->ft->getEntry(context, "None", &status);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_FOUND);
  CMPIContext* clone = context->ft->clone(context, &status);
  EXPECT_EQ(clone->ft->getEntryCount(clone, nullptr), 3U);
  clone->ft->release(clone);
}

TEST_F(Results, ShareWhatTheCallMadeAndCopyWhatAMarkTakesBack) {
  Arena keep;
  Result* result = makeResult(keep);
  const CMPIGcStat* mark = face->mft->mark(face, nullptr);
  EXPECT_EQ(result->ft->returnInstance(result, newInstance()).rc, CMPI_RC_OK);
  EXPECT_EQ(result->ft->returnObjectPath(result, newPath("A_Port", "two")).rc, CMPI_RC_OK);
  face->mft->release(face, mark);
  std::memset(arena.allocate(4000), 0x5a, 4000);
  EXPECT_EQ(result->ft->returnObjectPath(result, newPath("A_Port", "three")).rc, CMPI_RC_OK);
  EXPECT_EQ(result->ft->returnDone(result).rc, CMPI_RC_OK);
  EXPECT_TRUE(result->body().complete);
  ASSERT_EQ(result->body().count, 3U);
  const CMPIInstance* instance = result->body().items[0].value.inst;
  EXPECT_EQ(text(instance->ft->getObjectPath(instance, nullptr)), "root/jxv:A_Port.Name=\"one\"");
  EXPECT_EQ(text(result->body().items[1].value.ref), "root/jxv:A_Port.Name=\"two\"");
  EXPECT_EQ(text(result->body().items[2].value.ref), "root/jxv:A_Port.Name=\"three\"");
}

TEST_F(Results, AreNotTouchedByWhatThePoviderDoesNext) {
  Arena keep;
  Result* result = makeResult(keep);
  CMPIInstance* instance = newInstance();
  CMPIValue value = uint16Value(1);
  instance->ft->setProperty(instance, "Small", &value, CMPI_uint16);
  result->ft->returnInstance(result, instance);
  value = uint16Value(2);
  instance->ft->setProperty(instance, "Small", &value, CMPI_uint16);
  instance->ft->setProperty(instance, "Name", reinterpret_cast<const CMPIValue*>("x"), CMPI_chars);
  result->ft->returnInstance(result, instance);
  const CMPIInstance* first = result->body().items[0].value.inst;
  const CMPIInstance* second = result->body().items[1].value.inst;
  EXPECT_EQ(first->ft->getProperty(first, "Small", nullptr).value.uint16, 1);
  EXPECT_EQ(first->ft->getPropertyCount(first, nullptr), 1U);
  EXPECT_EQ(second->ft->getProperty(second, "Small", nullptr).value.uint16, 2);
  EXPECT_EQ(second->ft->getPropertyCount(second, nullptr), 2U);
}

TEST_F(Results, TakeMethodValuesAndRefuseNothing) {
  Arena keep;
  Result* result = makeResult(keep);
  const CMPIValue value = uint16Value(1);
  EXPECT_EQ(result->ft->returnData(result, &value, CMPI_uint16).rc, CMPI_RC_OK);
  EXPECT_EQ(result->ft->returnData(result, &value, 4711).rc, CMPI_RC_ERR_INVALID_DATA_TYPE);
  EXPECT_EQ(result->ft->returnInstance(result, nullptr).rc, CMPI_RC_ERR_INVALID_HANDLE);
  EXPECT_EQ(result->ft->returnObjectPath(result, nullptr).rc, CMPI_RC_ERR_INVALID_HANDLE);
  EXPECT_EQ(result->ft->returnError(result, nullptr).rc, CMPI_RC_ERR_NOT_SUPPORTED);
  EXPECT_EQ(result->ft->clone(result, &status), nullptr);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
  EXPECT_EQ(result->body().count, 1U);
}

TEST_F(Enumerations, WalkOnceAndBecomeArrays) {
  const CMPIData items[] = {dataOf(makePath(arena, "n", "A")), dataOf(makePath(arena, "n", "B"))};
  Enumeration* list = makeEnumeration(arena, items, 2);
  EXPECT_TRUE(list->ft->hasNext(list, &status));
  EXPECT_EQ(text(list->ft->getNext(list, &status).value.ref), "n:A");
  EXPECT_EQ(text(list->ft->getNext(list, &status).value.ref), "n:B");
  EXPECT_FALSE(list->ft->hasNext(list, &status));
  list->ft->getNext(list, &status);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_FOUND);
  CMPIArray* array = list->ft->toArray(list, &status);
  EXPECT_EQ(array->ft->getSize(array, nullptr), 2U);
  EXPECT_EQ(array->ft->getSimpleType(array, nullptr), CMPI_ref);
  EXPECT_EQ(list->ft->clone(list, &status), nullptr);
  EXPECT_EQ(list->ft->release(list).rc, CMPI_RC_OK);
  Enumeration* none = makeEnumeration(arena, nullptr, 0);
  EXPECT_EQ(none->ft->toArray(none, nullptr)->ft->getSize(none->ft->toArray(none, nullptr), nullptr), 0U);
}

TEST_F(Filters, SelectByClass) {
  CMPIArray* projection = nullptr;
  CMPISelectExp* filter = face->eft->newSelectExp(face, "select * from A_Port", "WQL", &projection, &status);
  ASSERT_NE(filter, nullptr);
  EXPECT_EQ(text(filter->ft->getString(filter, &status)), "select * from A_Port");
  EXPECT_TRUE(filter->ft->evaluate(filter, newInstance("A_SubPort"), &status));
  EXPECT_EQ(status.rc, CMPI_RC_OK);
  EXPECT_FALSE(filter->ft->evaluate(filter, newInstance("A_Other"), &status));
  EXPECT_EQ(filter->ft->getDOC(filter, &status), nullptr);
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
  EXPECT_EQ(filter->ft->getCOD(filter, &status), nullptr);
  EXPECT_FALSE(filter->ft->evaluateUsingAccessor(filter, nullptr, nullptr, &status));
  EXPECT_EQ(status.rc, CMPI_RC_ERR_NOT_SUPPORTED);
  CMPISelectExp* clone = filter->ft->clone(filter, &status);
  EXPECT_TRUE(clone->ft->evaluate(clone, newInstance(), &status));
  clone->ft->release(clone);
}

TEST_F(Filters, SelectByCondition) {
  CMPISelectExp* filter =
      face->eft->newSelectExp(face, "SELECT Name FROM A_Port WHERE Small = 5", "WQL", nullptr, &status);
  ASSERT_NE(filter, nullptr);
  CMPIInstance* const port = newInstance();
  EXPECT_FALSE(filter->ft->evaluate(filter, port, &status));
  EXPECT_EQ(status.rc, CMPI_RC_OK);
  const CMPIValue five = uint16Value(5);
  port->ft->setProperty(port, "Small", &five, CMPI_uint16);
  EXPECT_TRUE(filter->ft->evaluate(filter, port, &status));
}

TEST_F(Filters, WhatIsNoQueryIsRefused) {
  for (const char* query : {"", "SELECT", "SELECT *", "SELECT FROM A", "SELECT * FROM", "DELETE * FROM A",
                            "SELECT * FROM A WHERE", "SELECT * FROM A ORDER BY B"}) {
    EXPECT_EQ(face->eft->newSelectExp(face, query, "WQL", nullptr, &status), nullptr) << query;
    EXPECT_EQ(status.rc, CMPI_RC_ERR_INVALID_QUERY);
  }
}

}  // namespace
}  // namespace ZebManager
