// Values on their way between the provider and the fake object manager.
#include "FakeTables.h"

namespace ZEB::test {

using CmpiCpp::CmpiData;

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

}  // namespace ZEB::test
