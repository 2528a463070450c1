#include "BrokerValues.h"

namespace CmpiCpp {
namespace {

CmpiArray arrayOf(const CMPIArray* array, CMPIType elementType) {
  CMPIStatus status{CMPI_RC_OK, nullptr};
  const bool text = elementType == CMPI_chars;
  const CMPICount size = array->ft->getSize(array, &status);
  CmpiArray made(status.rc == CMPI_RC_OK ? size : 0, text ? CMPI_string : elementType);
  for (CMPICount i = 0; i < made.size(); ++i) {
    CmpiData element = fromBroker(array->ft->getElementAt(array, i, &status));
    if (element.type() == made.elementType()) made.setElementAt(i, std::move(element));
  }
  return made;
}

CmpiData dateTimeOf(const CMPIDateTime* dateTime) {
  CMPIStatus status{CMPI_RC_OK, nullptr};
  const CMPIUint64 microseconds = dateTime->ft->getBinaryFormat(dateTime, &status);
  const bool interval = dateTime->ft->isInterval(dateTime, &status) != 0;
  return status.rc == CMPI_RC_OK ? CmpiData(CmpiDateTime(microseconds, interval))
                                 : CmpiData::null(CMPI_dateTime);
}

}  // namespace

std::string fromBroker(const CMPIString* text) {
  const char* chars = text ? text->ft->getCharPtr(text, nullptr) : nullptr;
  return chars ? chars : "";
}

CmpiData fromBroker(const CMPIData& data) {
  const CMPIType type = data.type == CMPI_chars ? CMPI_string : data.type;
  if ((data.state & (CMPI_nullValue | CMPI_notFound | CMPI_badValue)) != 0) return CmpiData::null(type);
  if ((data.type & CMPI_ARRAY) != 0) {
    if (!data.value.array) return CmpiData::null(type);
    return arrayOf(data.value.array, static_cast<CMPIType>(data.type & ~CMPI_ARRAY));
  }
  switch (data.type) {
    case CMPI_boolean:
      return data.value.boolean != 0;
    case CMPI_real32:
      return static_cast<double>(data.value.real32);
    case CMPI_real64:
      return data.value.real64;
    case CMPI_uint8:
      return data.value.uint8;
    case CMPI_uint16:
      return data.value.uint16;
    case CMPI_uint32:
      return data.value.uint32;
    case CMPI_uint64:
      return data.value.uint64;
    case CMPI_sint8:
      return data.value.sint8;
    case CMPI_sint16:
      return data.value.sint16;
    case CMPI_sint32:
      return data.value.sint32;
    case CMPI_sint64:
      return data.value.sint64;
    case CMPI_string:
      return data.value.string ? CmpiData(fromBroker(data.value.string)) : CmpiData::null(type);
    case CMPI_chars:
      return data.value.chars ? CmpiData(data.value.chars) : CmpiData::null(type);
    case CMPI_dateTime:
      return data.value.dateTime ? dateTimeOf(data.value.dateTime) : CmpiData::null(type);
    case CMPI_ref:
      return data.value.ref ? CmpiData(fromBroker(data.value.ref)) : CmpiData::null(type);
    default:
      return CmpiData::null(type);
  }
}

CmpiObjectPath fromBroker(const CMPIObjectPath* path) {
  if (!path) return {};
  CMPIStatus status{CMPI_RC_OK, nullptr};
  std::vector<CmpiObjectPath::Key> keys;
  // Some object managers count keys on a class path that they then cannot deliver.
  const CMPICount count = path->ft->getKeyCount(path, nullptr);
  for (CMPICount i = 0; i < count; ++i) {
    CMPIString* name = nullptr;
    status.rc = CMPI_RC_OK;
    const CMPIData value = path->ft->getKeyAt(path, i, &name, &status);
    if (status.rc == CMPI_RC_OK && name) keys.push_back({fromBroker(name), fromBroker(value)});
  }
  return {fromBroker(path->ft->getNameSpace(path, nullptr)),
          fromBroker(path->ft->getClassName(path, nullptr)), fromBroker(path->ft->getHostname(path, nullptr)),
          std::move(keys)};
}

CmpiInstance fromBroker(const CMPIInstance* instance) {
  if (!instance) return {};
  CmpiInstance made(fromBroker(instance->ft->getObjectPath(instance, nullptr)));
  const CMPICount count = instance->ft->getPropertyCount(instance, nullptr);
  made.reserve(count);
  for (CMPICount i = 0; i < count; ++i) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    CMPIString* name = nullptr;
    const CMPIData value = instance->ft->getPropertyAt(instance, i, &name, &status);
    if (status.rc == CMPI_RC_OK && name) made.addProperty(fromBroker(name), fromBroker(value));
  }
  return made;
}

CmpiArgs fromBroker(const CMPIArgs* args) {
  CmpiArgs made;
  const CMPICount count = args ? args->ft->getArgCount(args, nullptr) : 0;
  for (CMPICount i = 0; i < count; ++i) {
    CMPIStatus status{CMPI_RC_OK, nullptr};
    CMPIString* name = nullptr;
    const CMPIData value = args->ft->getArgAt(args, i, &name, &status);
    if (status.rc == CMPI_RC_OK && name) made.setArg(fromBroker(name), fromBroker(value));
  }
  return made;
}

}  // namespace CmpiCpp
