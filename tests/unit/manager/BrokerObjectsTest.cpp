// Every slot of the objects that a provider gets from the broker: texts, times, arrays, arguments, contexts,
// results.
#include "BrokerFixture.h"

namespace ZebManager {
namespace {

using Strings = BrokerFixture;
using DateTimes = BrokerFixture;
using Arrays = BrokerFixture;
using Arguments = BrokerFixture;
using Contexts = BrokerFixture;
using Results = BrokerFixture;
using Enumerations = BrokerFixture;

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

}  // namespace
}  // namespace ZebManager
