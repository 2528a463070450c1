#include "BrokerValues.h"
#include "cmpicpp/CmpiStatus.h"

namespace CmpiCpp {
namespace {

constexpr CMPIStatus kOk{CMPI_RC_OK, nullptr};

CMPIArray* toBroker(const CMPIBroker* broker, const CmpiArray& array) {
  CMPIStatus status = kOk;
  CMPIArray* made =
      broker->eft->newArray(broker, static_cast<CMPICount>(array.size()), array.elementType(), &status);
  checked(made, status, "an array");
  CMPICount index = 0;
  for (const CmpiData& element : array.elements()) {
    if (!element.isNull()) {
      const CMPIValue value = toBroker(broker, element);
      made->ft->setElementAt(made, index, &value, element.type());
    }
    ++index;
  }
  return made;
}

CMPIDateTime* toBroker(const CMPIBroker* broker, const CmpiDateTime& dateTime) {
  CMPIStatus status = kOk;
  CMPIDateTime* made = broker->eft->newDateTimeFromBinary(broker, dateTime.microseconds(),
                                                          dateTime.isInterval() ? 1 : 0, &status);
  return checked(made, status, "a datetime");
}

void setInteger(CMPIValue& value, const CmpiData& data) {
  switch (data.type()) {
    case CMPI_uint8:
      value.uint8 = static_cast<CMPIUint8>(data.asUnsigned());
      break;
    case CMPI_uint16:
      value.uint16 = static_cast<CMPIUint16>(data.asUnsigned());
      break;
    case CMPI_uint32:
      value.uint32 = static_cast<CMPIUint32>(data.asUnsigned());
      break;
    case CMPI_uint64:
      value.uint64 = data.asUnsigned();
      break;
    case CMPI_sint8:
      value.sint8 = static_cast<CMPISint8>(data.asSigned());
      break;
    case CMPI_sint16:
      value.sint16 = static_cast<CMPISint16>(data.asSigned());
      break;
    case CMPI_sint32:
      value.sint32 = static_cast<CMPISint32>(data.asSigned());
      break;
    case CMPI_sint64:
      value.sint64 = data.asSigned();
      break;
    default:
      throw CmpiStatus(CMPI_RC_ERR_INVALID_DATA_TYPE);
  }
}

}  // namespace

CMPIString* toBroker(const CMPIBroker* broker, const std::string& text) {
  CMPIStatus status = kOk;
  return checked(broker->eft->newString(broker, text.c_str(), &status), status, "a string");
}

CMPIValue toBroker(const CMPIBroker* broker, const CmpiData& data) {
  CMPIValue value{};
  if ((data.type() & CMPI_ARRAY) != 0) {
    value.array = toBroker(broker, data.asArray());
    return value;
  }
  switch (data.type()) {
    case CMPI_boolean:
      value.boolean = data.asBoolean() ? 1 : 0;
      break;
    case CMPI_real64:
      value.real64 = data.asReal();
      break;
    case CMPI_string:
      value.string = toBroker(broker, data.asString());
      break;
    case CMPI_dateTime:
      value.dateTime = toBroker(broker, data.asDateTime());
      break;
    case CMPI_ref:
      value.ref = toBroker(broker, data.asReference());
      break;
    default:
      setInteger(value, data);
  }
  return value;
}

CMPIObjectPath* toBroker(const CMPIBroker* broker, const CmpiObjectPath& path) {
  CMPIStatus status = kOk;
  CMPIObjectPath* made =
      broker->eft->newObjectPath(broker, path.nameSpace().c_str(), path.className().c_str(), &status);
  checked(made, status, "a path of class ", path.className().view());
  if (!path.host().empty()) made->ft->setHostname(made, path.host().c_str());
  for (const CmpiObjectPath::Key& key : path.keys()) {
    const CMPIValue value = toBroker(broker, key.value);
    made->ft->addKey(made, key.name.c_str(), &value, key.value.type());
  }
  return made;
}

CMPIInstance* toBroker(const CMPIBroker* broker, const CmpiInstance& instance) {
  return InstanceMaker(broker).make(instance);
}

}  // namespace CmpiCpp
