#include "FakeEncapsulation.h"

#include "FakeBroker.h"

namespace ZEB::test {
namespace {

FakeBroker& brokerOf(const CMPIBroker* broker) {
  return *static_cast<FakeBroker*>(const_cast<void*>(broker->hdl));
}

template <class Object, class... Arguments>
Object* make(const CMPIBroker* broker, CMPIStatus* status, Arguments&&... arguments) {
  if (status) *status = {CMPI_RC_OK, nullptr};
  return brokerOf(broker).make<Object>(std::forward<Arguments>(arguments)...);
}

CMPIInstance* newInstance(const CMPIBroker* broker, const CMPIObjectPath* path, CMPIStatus* status) {
  const CmpiCpp::CmpiObjectPath& of = static_cast<const FakeObjectPath*>(path)->value;
  auto* made = make<FakeInstance>(broker, status, CmpiCpp::CmpiInstance(of));
  made->prefilled = brokerOf(broker).prefilled(of);
  return made;
}

CMPIObjectPath* newObjectPath(const CMPIBroker* broker, const char* nameSpace, const char* className,
                              CMPIStatus* status) {
  return make<FakeObjectPath>(broker, status,
                              CmpiCpp::CmpiObjectPath(nameSpace, CmpiCpp::CmpiName(className)));
}

CMPIArgs* newArgs(const CMPIBroker* broker, CMPIStatus* status) {
  return make<FakeArgs>(broker, status, CmpiCpp::CmpiArgs());
}

CMPIString* newString(const CMPIBroker* broker, const char* text, CMPIStatus* status) {
  return make<FakeString>(broker, status, text);
}

CMPIArray* newArray(const CMPIBroker* broker, CMPICount size, CMPIType type, CMPIStatus* status) {
  return make<FakeArray>(broker, status, CmpiCpp::CmpiArray(size, type));
}

CMPIDateTime* newDateTime(const CMPIBroker* broker, CMPIStatus* status) {
  return make<FakeDateTime>(broker, status, CmpiCpp::CmpiDateTime(0, false));
}

CMPIDateTime* newDateTimeFromBinary(const CMPIBroker* broker, CMPIUint64 microseconds, CMPIBoolean interval,
                                    CMPIStatus* status) {
  return make<FakeDateTime>(broker, status, CmpiCpp::CmpiDateTime(microseconds, interval != 0));
}

CMPIDateTime* newDateTimeFromChars(const CMPIBroker* broker, const char* text, CMPIStatus* status) {
  const auto value = CmpiCpp::CmpiDateTime::parse(text);
  if (value) return make<FakeDateTime>(broker, status, *value);
  if (status) *status = {CMPI_RC_ERR_INVALID_PARAMETER, nullptr};
  return nullptr;
}

}  // namespace

void fillFactories(CMPIBrokerEncFT& table) {
  table.newInstance = newInstance;
  table.newObjectPath = newObjectPath;
  table.newArgs = newArgs;
  table.newString = newString;
  table.newArray = newArray;
  table.newDateTime = newDateTime;
  table.newDateTimeFromBinary = newDateTimeFromBinary;
  table.newDateTimeFromChars = newDateTimeFromChars;
}

}  // namespace ZEB::test
