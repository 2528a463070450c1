#include "FakeObjects.h"

#include <algorithm>
#include <utility>

#include "FakeBroker.h"
#include "cmpicpp/CmpiStatus.h"

namespace ZEB::test {

using CmpiCpp::CmpiArray;
using CmpiCpp::CmpiData;
using CmpiCpp::CmpiObjectPath;

namespace {

constexpr CMPIStatus kOk{CMPI_RC_OK, nullptr};

void answer(CMPIStatus* status, CMPIrc rc = CMPI_RC_OK) {
  if (status) *status = {rc, nullptr};
}

CMPIData missing(CMPIStatus* status, CMPIrc rc) {
  answer(status, rc);
  return {CMPI_null, CMPI_notFound, {}};
}

template <class Object, class Interface>
Object& as(const Interface* object) {
  return const_cast<Object&>(*static_cast<const Object*>(object));
}

template <class Interface>
FakeBroker& of(const Interface* object) {
  return *static_cast<FakeBroker*>(const_cast<void*>(object->hdl));
}

}  // namespace

/// What the objects' own tables point to.
struct FakeObjectTables {
  template <class Object, class Interface>
  static Interface* clone(const Interface* object, CMPIStatus* status) {
    answer(status);
    auto* made = new Object(as<Object>(object));
    made->cloned = true;
    ++of(object)._liveClones;
    return made;
  }

  // What belongs to a call is freed with the call, whatever its owner asks.
  template <class Object, class Interface>
  static CMPIStatus release(Interface* object) {
    Object* owned = &as<Object>(object);
    if (owned->cloned) {
      --of(object)._liveClones;
      delete owned;
    }
    return kOk;
  }

  static CMPIString* text(const void* broker, CMPIStatus* status, const std::string& value) {
    answer(status);
    return static_cast<FakeBroker*>(const_cast<void*>(broker))->make<FakeString>(value);
  }
};

using Tables = FakeObjectTables;

CmpiData readValue(const CMPIValue* value, CMPIType type) {
  const CMPIType plain = type == CMPI_chars ? CMPI_string : type;
  if (!value) return CmpiData::null(plain);
  if ((type & CMPI_ARRAY) != 0)
    return value->array ? CmpiData(as<FakeArray>(value->array).value) : CmpiData::null(type);
  switch (type) {
    case CMPI_boolean:
      return value->boolean != 0;
    case CMPI_uint8:
      return value->uint8;
    case CMPI_uint16:
      return value->uint16;
    case CMPI_uint32:
      return value->uint32;
    case CMPI_uint64:
      return value->uint64;
    case CMPI_sint8:
      return value->sint8;
    case CMPI_sint16:
      return value->sint16;
    case CMPI_sint32:
      return value->sint32;
    case CMPI_sint64:
      return value->sint64;
    case CMPI_real32:
      return static_cast<double>(value->real32);
    case CMPI_real64:
      return value->real64;
    case CMPI_string:
      return value->string ? CmpiData(as<FakeString>(value->string).text) : CmpiData::null(plain);
    case CMPI_chars:
      // Passed as the characters themselves.
      return CmpiData(reinterpret_cast<const char*>(value));
    case CMPI_dateTime:
      return value->dateTime ? CmpiData(as<FakeDateTime>(value->dateTime).value) : CmpiData::null(plain);
    case CMPI_ref:
      return value->ref ? CmpiData(as<FakeObjectPath>(value->ref).value) : CmpiData::null(plain);
    default:
      return CmpiData::null(plain);
  }
}

CMPIData writeValue(FakeBroker& broker, const CmpiData& data) {
  CMPIData written{data.type(), CMPI_goodValue, {}};
  if (data.isNull()) {
    written.state = CMPI_nullValue;
    return written;
  }
  if ((data.type() & CMPI_ARRAY) != 0) {
    written.value.array = broker.make<FakeArray>(data.asArray());
    return written;
  }
  switch (data.type()) {
    case CMPI_boolean:
      written.value.boolean = data.asBoolean() ? 1 : 0;
      break;
    case CMPI_real64:
      written.value.real64 = data.asReal();
      break;
    case CMPI_string:
      written.value.string = broker.make<FakeString>(data.asString());
      break;
    case CMPI_dateTime:
      written.value.dateTime = broker.make<FakeDateTime>(data.asDateTime());
      break;
    case CMPI_ref:
      written.value.ref = broker.make<FakeObjectPath>(data.asReference());
      break;
    case CMPI_sint8:
    case CMPI_sint16:
    case CMPI_sint32:
    case CMPI_sint64:
      written.value.sint64 = data.asSigned();  // little endian: the narrower members are its low bytes
      break;
    default:
      written.value.uint64 = data.asUnsigned();
  }
  return written;
}

namespace {

template <class Interface>
CMPIData readAt(const Interface* object, const CmpiCpp::CmpiName& name, const CmpiData& value,
                CMPIString** nameOut, CMPIStatus* status) {
  answer(status);
  if (nameOut) *nameOut = of(object).template make<FakeString>(name.str());
  return writeValue(of(object), value);
}

// --- strings ---

const char* getCharPtr(const CMPIString* string, CMPIStatus* status) {
  answer(status);
  const auto& text = as<FakeString>(string);
  return text.nullText ? nullptr : text.text.c_str();
}

const CMPIStringFT kStringTable = {CMPIVersion200, Tables::release<FakeString, CMPIString>,
                                   Tables::clone<FakeString, CMPIString>, getCharPtr, nullptr};

// --- object paths ---

CMPIStatus pathSetNameSpace(const CMPIObjectPath* path, const char* nameSpace) {
  as<FakeObjectPath>(path).value.setNameSpace(nameSpace);
  return kOk;
}

CMPIStatus pathSetHostname(const CMPIObjectPath* path, const char* host) {
  as<FakeObjectPath>(path).value.setHost(host);
  return kOk;
}

CMPIString* pathGetNameSpace(const CMPIObjectPath* path, CMPIStatus* status) {
  return Tables::text(path->hdl, status, as<FakeObjectPath>(path).value.nameSpace());
}

CMPIString* pathGetHostname(const CMPIObjectPath* path, CMPIStatus* status) {
  return Tables::text(path->hdl, status, as<FakeObjectPath>(path).value.host());
}

CMPIString* pathGetClassName(const CMPIObjectPath* path, CMPIStatus* status) {
  return Tables::text(path->hdl, status, as<FakeObjectPath>(path).value.className().str());
}

CMPIStatus pathAddKey(const CMPIObjectPath* path, const char* name, const CMPIValue* value,
                      const CMPIType type) {
  as<FakeObjectPath>(path).value.addKey(name, readValue(value, type));
  return kOk;
}

CMPIData pathGetKey(const CMPIObjectPath* path, const char* name, CMPIStatus* status) {
  const CmpiData* value = as<FakeObjectPath>(path).value.findKey(name);
  if (!value) return missing(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  return readAt(path, name, *value, nullptr, status);
}

CMPIData pathGetKeyAt(const CMPIObjectPath* path, CMPICount index, CMPIString** name, CMPIStatus* status) {
  const auto& keys = as<FakeObjectPath>(path).value.keys();
  if (index >= keys.size()) return missing(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  return readAt(path, keys[index].name, keys[index].value, name, status);
}

CMPICount pathGetKeyCount(const CMPIObjectPath* path, CMPIStatus* status) {
  answer(status);
  return static_cast<CMPICount>(as<FakeObjectPath>(path).value.keys().size());
}

CMPIString* pathToString(const CMPIObjectPath* path, CMPIStatus* status) {
  return Tables::text(path->hdl, status, as<FakeObjectPath>(path).value.str());
}

const CMPIObjectPathFT kObjectPathTable = {CMPIVersion200,
                                           Tables::release<FakeObjectPath, CMPIObjectPath>,
                                           Tables::clone<FakeObjectPath, CMPIObjectPath>,
                                           pathSetNameSpace,
                                           pathGetNameSpace,
                                           pathSetHostname,
                                           pathGetHostname,
                                           nullptr,
                                           pathGetClassName,
                                           pathAddKey,
                                           pathGetKey,
                                           pathGetKeyAt,
                                           pathGetKeyCount,
                                           nullptr,
                                           nullptr,
                                           nullptr,
                                           nullptr,
                                           nullptr,
                                           nullptr,
                                           pathToString};

// --- instances ---

CMPIData instanceGetProperty(const CMPIInstance* instance, const char* name, CMPIStatus* status) {
  const CmpiData* value = as<FakeInstance>(instance).value.findProperty(name);
  if (!value) return missing(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  return readAt(instance, name, *value, nullptr, status);
}

CMPIData instanceGetPropertyAt(const CMPIInstance* instance, CMPICount index, CMPIString** name,
                               CMPIStatus* status) {
  const auto& properties = as<FakeInstance>(instance).value.properties();
  if (index >= properties.size()) return missing(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  return readAt(instance, properties[index].name, properties[index].value, name, status);
}

CMPICount instanceGetPropertyCount(const CMPIInstance* instance, CMPIStatus* status) {
  answer(status);
  return static_cast<CMPICount>(as<FakeInstance>(instance).value.properties().size());
}

CMPIStatus instanceSetProperty(const CMPIInstance* instance, const char* name, const CMPIValue* value,
                               CMPIType type) {
  as<FakeInstance>(instance).value.addProperty(name, readValue(value, type));
  return kOk;
}

CMPIObjectPath* instanceGetObjectPath(const CMPIInstance* instance, CMPIStatus* status) {
  answer(status);
  return of(instance).make<FakeObjectPath>(as<FakeInstance>(instance).value.path());
}

const CMPIInstanceFT kInstanceTable = {CMPIVersion200,
                                       Tables::release<FakeInstance, CMPIInstance>,
                                       Tables::clone<FakeInstance, CMPIInstance>,
                                       instanceGetProperty,
                                       instanceGetPropertyAt,
                                       instanceGetPropertyCount,
                                       instanceSetProperty,
                                       instanceGetObjectPath,
                                       nullptr,
                                       nullptr,
                                       nullptr};

// --- arrays ---

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

// --- datetimes ---

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

// --- arguments ---

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

// --- contexts ---

CMPIData contextGetEntry(const CMPIContext* context, const char* name, CMPIStatus* status) {
  const auto& self = as<FakeContext>(context);
  if (std::find(self.nullTexts.begin(), self.nullTexts.end(), name) != self.nullTexts.end()) {
    answer(status);
    auto* text = of(context).make<FakeString>("");
    text->nullText = true;
    CMPIData entry{CMPI_string, CMPI_goodValue, {}};
    entry.value.string = text;
    return entry;
  }
  const auto found = self.entries.find(name);
  if (found == self.entries.end()) return missing(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  answer(status);
  return writeValue(of(context), found->second);
}

CMPICount contextGetEntryCount(const CMPIContext* context, CMPIStatus* status) {
  answer(status);
  return static_cast<CMPICount>(as<FakeContext>(context).entries.size());
}

CMPIStatus contextAddEntry(const CMPIContext* context, const char* name, const CMPIValue* value,
                           const CMPIType type) {
  as<FakeContext>(context).entries[name] = readValue(value, type);
  return kOk;
}

const CMPIContextFT kContextTable = {CMPIVersion200,
                                     Tables::release<FakeContext, CMPIContext>,
                                     Tables::clone<FakeContext, CMPIContext>,
                                     contextGetEntry,
                                     nullptr,
                                     contextGetEntryCount,
                                     contextAddEntry};

// --- results ---

template <class Member, class Value>
CMPIStatus keepIn(const CMPIResult* result, Member member, Value&& value) {
  FakeResult& self = as<FakeResult>(result);
  if (self.answer == CMPI_RC_OK) (self.*member).push_back(std::forward<Value>(value));
  return {self.answer, nullptr};
}

CMPIStatus returnData(const CMPIResult* result, const CMPIValue* value, const CMPIType type) {
  return keepIn(result, &FakeResult::data, readValue(value, type));
}

CMPIStatus returnInstance(const CMPIResult* result, const CMPIInstance* instance) {
  return keepIn(result, &FakeResult::instances, as<FakeInstance>(instance).value);
}

CMPIStatus returnObjectPath(const CMPIResult* result, const CMPIObjectPath* path) {
  return keepIn(result, &FakeResult::paths, as<FakeObjectPath>(path).value);
}

CMPIStatus returnDone(const CMPIResult* result) {
  ++as<FakeResult>(result).done;
  return kOk;
}

const CMPIResultFT kResultTable = {CMPIVersion200,
                                   Tables::release<FakeResult, CMPIResult>,
                                   Tables::clone<FakeResult, CMPIResult>,
                                   returnData,
                                   returnInstance,
                                   returnObjectPath,
                                   returnDone,
                                   nullptr};

}  // namespace

FakeString::FakeString(FakeBroker& broker, std::string theText)
    : CMPIString{&broker, &kStringTable}, text(std::move(theText)) {}
FakeObjectPath::FakeObjectPath(FakeBroker& broker, CmpiObjectPath theValue)
    : CMPIObjectPath{&broker, &kObjectPathTable}, value(std::move(theValue)) {}
FakeInstance::FakeInstance(FakeBroker& broker, CmpiCpp::CmpiInstance theValue)
    : CMPIInstance{&broker, &kInstanceTable}, value(std::move(theValue)) {}
FakeArray::FakeArray(FakeBroker& broker, CmpiArray theValue)
    : CMPIArray{&broker, &kArrayTable}, value(std::move(theValue)) {}
FakeDateTime::FakeDateTime(FakeBroker& broker, CmpiCpp::CmpiDateTime theValue)
    : CMPIDateTime{&broker, &kDateTimeTable}, value(theValue) {}
FakeArgs::FakeArgs(FakeBroker& broker, CmpiCpp::CmpiArgs theValue)
    : CMPIArgs{&broker, &kArgsTable}, value(std::move(theValue)) {}
FakeContext::FakeContext(FakeBroker& broker) : CMPIContext{&broker, &kContextTable} {}
FakeResult::FakeResult(FakeBroker& broker) : CMPIResult{&broker, &kResultTable} {}

}  // namespace ZEB::test
