#include "TestThings.h"

namespace ZebTestPlugin {
namespace {

template <class T>
void set(CMPIInstance* instance, const char* name, T CMPIValue::*member, T value, CMPIType type) {
  CMPIValue data{};
  data.*member = value;
  instance->ft->setProperty(instance, name, &data, type);
}

void setArrays(CMPIInstance* instance) {
  CMPIArray* texts = theBroker->eft->newArray(theBroker, 2, CMPI_string, nullptr);
  const CMPIValue first = stringValue("a,\"b\"");
  texts->ft->setElementAt(texts, 0, &first, CMPI_string);
  set(instance, "Texts", &CMPIValue::array, texts, CMPI_string | CMPI_ARRAY);
  CMPIArray* numbers = theBroker->eft->newArray(theBroker, 2, CMPI_uint16, nullptr);
  CMPIValue number{};
  for (CMPICount i = 0; i < 2; ++i) {
    number.uint16 = static_cast<CMPIUint16>(i + 2);
    numbers->ft->setElementAt(numbers, i, &number, CMPI_uint16);
  }
  set(instance, "Numbers", &CMPIValue::array, numbers, CMPI_uint16 | CMPI_ARRAY);
}

}  // namespace

const CMPIBroker* theBroker = nullptr;

CMPIValue stringValue(const char* text) {
  CMPIValue value{};
  value.string = theBroker->eft->newString(theBroker, text, nullptr);
  return value;
}

CMPIObjectPath* thingPath(const char* className, const char* name) {
  CMPIObjectPath* path = theBroker->eft->newObjectPath(theBroker, "root/jxv", className, nullptr);
  const CMPIValue key = stringValue(name);
  path->ft->addKey(path, "Name", &key, CMPI_string);
  return path;
}

CMPIInstance* thing(const char* className, const char* name) {
  CMPIInstance* made = theBroker->eft->newInstance(theBroker, thingPath(className, name), nullptr);
  made->ft->setProperty(made, "Name", reinterpret_cast<const CMPIValue*>(name), CMPI_chars);
  set<CMPIBoolean>(made, "Flag", &CMPIValue::boolean, 1, CMPI_boolean);
  set<CMPIUint8>(made, "Tiny", &CMPIValue::uint8, 255, CMPI_uint8);
  set<CMPIUint16>(made, "Small", &CMPIValue::uint16, 65535, CMPI_uint16);
  set<CMPIUint32>(made, "Medium", &CMPIValue::uint32, 4294967295U, CMPI_uint32);
  set<CMPIUint64>(made, "Large", &CMPIValue::uint64, 18446744073709551615U, CMPI_uint64);
  set<CMPISint8>(made, "SignedTiny", &CMPIValue::sint8, -128, CMPI_sint8);
  set<CMPISint16>(made, "SignedSmall", &CMPIValue::sint16, -32768, CMPI_sint16);
  set<CMPISint32>(made, "SignedMedium", &CMPIValue::sint32, -2147483647, CMPI_sint32);
  set<CMPISint64>(made, "SignedLarge", &CMPIValue::sint64, -9223372036854775807, CMPI_sint64);
  set<CMPIReal32>(made, "Single", &CMPIValue::real32, 0.5F, CMPI_real32);
  set<CMPIReal64>(made, "Double", &CMPIValue::real64, -2.25, CMPI_real64);
  set<CMPIChar16>(made, "Letter", &CMPIValue::char16, 0xe4, CMPI_char16);
  set(made, "When", &CMPIValue::dateTime,
      theBroker->eft->newDateTimeFromBinary(theBroker, 1'000'000, 0, nullptr), CMPI_dateTime);
  setArrays(made);
  made->ft->setProperty(made, "Absent", nullptr, CMPI_string);
  return made;
}

CMPIObjectPath* linkPath() {
  CMPIObjectPath* path = theBroker->eft->newObjectPath(theBroker, "root/jxv", "T_Link", nullptr);
  path->ft->setHostname(path, "host");
  CMPIValue end{};
  end.ref = thingPath("T_Thing", "one \"1\"");
  path->ft->addKey(path, "One", &end, CMPI_ref);
  end.ref = thingPath("T_Special", "two");
  path->ft->addKey(path, "Other", &end, CMPI_ref);
  return path;
}

CMPIInstance* link() {
  CMPIObjectPath* path = linkPath();
  CMPIInstance* made = theBroker->eft->newInstance(theBroker, path, nullptr);
  for (const char* role : {"One", "Other"}) {
    const CMPIData end = path->ft->getKey(path, role, nullptr);
    made->ft->setProperty(made, role, &end.value, CMPI_ref);
  }
  return made;
}

}  // namespace ZebTestPlugin
