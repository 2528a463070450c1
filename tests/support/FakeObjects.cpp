// Texts, arrays, times and arguments.
#include "FakeTables.h"
#include "cmpicpp/CmpiStatus.h"

namespace ZEB::test {

using CmpiCpp::CmpiArray;
using CmpiCpp::CmpiData;

namespace {

const char* getCharPtr(const CMPIString* string, CMPIStatus* status) {
  answer(status);
  const auto& text = as<FakeString>(string);
  return text.nullText ? nullptr : text.text.c_str();
}

const CMPIStringFT kStringTable = {CMPIVersion200, Tables::release<FakeString, CMPIString>,
                                   Tables::clone<FakeString, CMPIString>, getCharPtr, nullptr};

CMPICount arrayGetSize(const CMPIArray* array, CMPIStatus* status) {
  answer(status);
  return static_cast<CMPICount>(as<FakeArray>(array).value.size());
}

CMPIType arrayGetSimpleType(const CMPIArray* array, CMPIStatus* status) {
  answer(status);
  return as<FakeArray>(array).value.elementType();
}

CMPIData arrayGetElementAt(const CMPIArray* array, CMPICount index, CMPIStatus* status) {
  const CmpiArray& value = as<FakeArray>(array).value;
  if (index >= value.size()) return missing(status, CMPI_RC_ERR_NOT_FOUND);
  answer(status);
  return writeValue(of(array), value[index]);
}

CMPIStatus arraySetElementAt(const CMPIArray* array, CMPICount index, const CMPIValue* value, CMPIType type) {
  try {
    as<FakeArray>(array).value.setElementAt(index, readValue(value, type));
    return kOk;
  } catch (const CmpiCpp::CmpiStatus& failure) {
    return {failure.rc(), nullptr};
  }
}

const CMPIArrayFT kArrayTable = {CMPIVersion200,
                                 Tables::release<FakeArray, CMPIArray>,
                                 Tables::clone<FakeArray, CMPIArray>,
                                 arrayGetSize,
                                 arrayGetSimpleType,
                                 arrayGetElementAt,
                                 arraySetElementAt};

CMPIUint64 dateTimeGetBinary(const CMPIDateTime* dateTime, CMPIStatus* status) {
  answer(status);
  return as<FakeDateTime>(dateTime).value.microseconds();
}

CMPIString* dateTimeGetString(const CMPIDateTime* dateTime, CMPIStatus* status) {
  return Tables::text(dateTime->hdl, status, as<FakeDateTime>(dateTime).value.str());
}

CMPIBoolean dateTimeIsInterval(const CMPIDateTime* dateTime, CMPIStatus* status) {
  answer(status);
  return as<FakeDateTime>(dateTime).value.isInterval() ? 1 : 0;
}

const CMPIDateTimeFT kDateTimeTable = {CMPIVersion200,
                                       Tables::release<FakeDateTime, CMPIDateTime>,
                                       Tables::clone<FakeDateTime, CMPIDateTime>,
                                       dateTimeGetBinary,
                                       dateTimeGetString,
                                       dateTimeIsInterval};

CMPIStatus argsAdd(const CMPIArgs* args, const char* name, const CMPIValue* value, const CMPIType type) {
  as<FakeArgs>(args).value.setArg(name, readValue(value, type));
  return kOk;
}

CMPIData argsGet(const CMPIArgs* args, const char* name, CMPIStatus* status) {
  const CmpiData* value = as<FakeArgs>(args).value.findArg(name);
  if (!value) return missing(status, CMPI_RC_ERR_NOT_FOUND);
  return readAt(args, name, *value, nullptr, status);
}

CMPIData argsGetAt(const CMPIArgs* args, CMPICount index, CMPIString** name, CMPIStatus* status) {
  const auto& all = as<FakeArgs>(args).value.arguments();
  if (index >= all.size()) return missing(status, CMPI_RC_ERR_NOT_FOUND);
  return readAt(args, all[index].name, all[index].value, name, status);
}

CMPICount argsGetCount(const CMPIArgs* args, CMPIStatus* status) {
  answer(status);
  return static_cast<CMPICount>(as<FakeArgs>(args).value.arguments().size());
}

const CMPIArgsFT kArgsTable = {CMPIVersion200,
                               Tables::release<FakeArgs, CMPIArgs>,
                               Tables::clone<FakeArgs, CMPIArgs>,
                               argsAdd,
                               argsGet,
                               argsGetAt,
                               argsGetCount};

}  // namespace

FakeString::FakeString(FakeBroker& broker, std::string theText)
    : CMPIString{&broker, &kStringTable}, text(std::move(theText)) {}
FakeArray::FakeArray(FakeBroker& broker, CmpiArray theValue)
    : CMPIArray{&broker, &kArrayTable}, value(std::move(theValue)) {}
FakeDateTime::FakeDateTime(FakeBroker& broker, CmpiCpp::CmpiDateTime theValue)
    : CMPIDateTime{&broker, &kDateTimeTable}, value(theValue) {}
FakeArgs::FakeArgs(FakeBroker& broker, CmpiCpp::CmpiArgs theValue)
    : CMPIArgs{&broker, &kArgsTable}, value(std::move(theValue)) {}

}  // namespace ZEB::test
