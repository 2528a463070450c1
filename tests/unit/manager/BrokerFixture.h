// A broker over a small schema, inside a call.
#pragma once

#include <gmock/gmock.h>

#include <string>

#include "broker/Broker.h"
#include "values/CallMemory.h"
#include "values/Values.h"

namespace ZebManager {

inline constexpr char kTestSchema[] = R"(
  [Abstract] class A_Base { [Key] string Name; };
  class A_Port : A_Base {
    boolean Flag; uint8 Tiny; uint16 Small; uint32 Medium; uint64 Large; sint8 Low; sint64 Lowest;
    real32 Single; real64 Double; char16 Letter; datetime When; string Texts[]; uint16 Numbers[];
  };
  class A_SubPort : A_Port {};
  class A_Keyed { [Key] uint64 Number; [Key] boolean Flag; [Key] sint32 Signed; [Key] datetime When; };
  [Association] class A_Link { [Key] A_Base REF One; [Key] A_Base REF Other; uint16 Kind; };
  [Association] class A_Deep { [Key] A_Link REF Link; [Key] A_Base REF End; };
  [Indication] class A_Alert { string Text; };
  class A_SubAlert : A_Alert {};
  class A_Other { [Key] string Name; };)";

class BrokerFixture : public testing::Test {
 protected:
  CMPIObjectPath* newPath(const char* className = "A_Port", const char* name = nullptr) {
    CMPIObjectPath* path = face->eft->newObjectPath(face, "root/jxv", className, &status);
    if (name) path->ft->addKey(path, "Name", reinterpret_cast<const CMPIValue*>(name), CMPI_chars);
    return path;
  }
  CMPIInstance* newInstance(const char* className = "A_Port") {
    return face->eft->newInstance(face, newPath(className, "one"), &status);
  }
  CMPIString* newString(const char* text) { return face->eft->newString(face, text, &status); }
  std::string text(const CMPIString* string) {
    return string ? string->ft->getCharPtr(string, nullptr) : "(null)";
  }
  std::string text(const CMPIData& data) { return text(data.value.string); }
  std::string text(const CMPIObjectPath* path) { return text(path->ft->toString(path, nullptr)); }

  static CMPIValue uint16Value(CMPIUint16 number) {
    CMPIValue value{};
    value.uint16 = number;
    return value;
  }

  ClassRepository repository = ClassRepository::fromText(kTestSchema, "test.mof");
  Broker broker{repository};
  const CMPIBroker* face = broker.face();
  Arena arena;
  ArenaScope call{arena};
  CMPIStatus status = {CMPI_RC_OK, nullptr};
};

}  // namespace ZebManager
