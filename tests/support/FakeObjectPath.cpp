// Object paths.
#include "FakeTables.h"

namespace ZEB::test {

using CmpiCpp::CmpiData;
using CmpiCpp::CmpiObjectPath;

namespace {

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
  constexpr std::size_t kAsTheClassHas = 4;
  const std::size_t keys = as<FakeObjectPath>(path).value.keys().size();
  const bool countsTheClass = keys == 0 && of(path).habits().countsKeysOfClassPaths;
  return static_cast<CMPICount>(countsTheClass ? kAsTheClassHas : keys);
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

}  // namespace

FakeObjectPath::FakeObjectPath(FakeBroker& broker, CmpiObjectPath theValue)
    : CMPIObjectPath{&broker, &kObjectPathTable}, value(std::move(theValue)) {}

}  // namespace ZEB::test
