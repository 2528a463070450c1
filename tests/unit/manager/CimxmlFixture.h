// Requests in CIM-XML to a namespace that keeps one instance.
#pragma once

#include <gmock/gmock.h>

#include <optional>
#include <string>
#include <vector>

#include "cimxml/Answer.h"
#include "values/CallMemory.h"
#include "values/Values.h"

namespace ZebManager {

inline constexpr char kSchema[] = R"(
  [Description("A <thing>")] class T_Base { [Key] string Name; uint8 Small; };
  class T_Thing : T_Base { sint64 Big; boolean Flag; real64 Real; char16 Letter; datetime When; string Texts[];
    uint16 Numbers[]; string Nothing; uint32 Act([In] uint16 Count, [Out] string Said); };
  class T_Defaults { [Key] string Name; string Words[] = {"", "a<b"}; uint16 Ranks[] = {1, 0x10}; string None[] = {};
    boolean On = true; };
  [Version("1.2")] class T_Told { [Key, Description("who")] string Name; [Units("Bits"), Write] uint64 Width;
    [ValueMap {"1"}, Values {"a<b"}] uint16 Kind; };
  class T_Retold : T_Told { [Override("Kind"), Description("what")] uint16 Kind; };
  class T_More : T_Defaults { [Override("Ranks")] uint16 Ranks[] = {3}; };
  [Association] class T_Link { [Key] T_Base REF One; [Key] T_Base REF Other; };)";

/// Keeps the instance that it was given, and gives it back.
class Store : public Namespace {
 public:
  const ClassRepository& repository() const override { return _repository; }
  Reply enumerateInstances(std::string_view, PropertyList properties) override { return stored(properties); }
  Reply enumerateInstanceNames(std::string_view) override { return refused(); }
  Reply getInstance(const CMPIObjectPath&, PropertyList properties) override { return stored(properties); }
  Reply createInstance(const CMPIObjectPath&, const CMPIInstance& instance) override {
    _instance = makeHandle<Instance>(_arena, copyInstance(_arena, as<Instance>(&instance)->body()));
    return {};
  }
  Reply modifyInstance(const CMPIObjectPath&, const CMPIInstance&, PropertyList properties) override {
    stored(properties);
    return refused();
  }
  Reply deleteInstance(const CMPIObjectPath&) override { return refused(); }
  Reply associators(const CMPIObjectPath&, const AssociationFilter&, PropertyList properties) override {
    return stored(properties);
  }
  Reply associatorNames(const CMPIObjectPath&, const AssociationFilter&) override { return refused(); }
  Reply references(const CMPIObjectPath&, const AssociationFilter&, PropertyList) override {
    return refused();
  }
  Reply referenceNames(const CMPIObjectPath&, const AssociationFilter&) override { return refused(); }
  Reply invokeMethod(const CMPIObjectPath&, const char*, const CMPIArgs& in, CMPIArgs& out) override {
    const CMPIData count = in.ft->getArg(&in, "Count", nullptr);
    EXPECT_EQ(count.type, CMPI_uint16);
    const CMPIData said = dataOf(makeString(_arena, std::to_string(count.value.uint16) + " times"));
    out.ft->addArg(&out, "Said", &said.value, said.type);
    addParts(out);
    Reply reply;
    CMPIValue value{};
    value.uint32 = 3;
    reply.result()->body().append(dataOf(CMPI_uint32, value));
    return reply;
  }

  /// The list of properties that the last operation came with.
  std::optional<std::vector<std::string>> asked;

 private:
  /// Two instances in an array.
  void addParts(CMPIArgs& out) {
    Array& parts = *makeArray(_arena, 2, CMPI_instance);
    for (CMPICount i = 0; i < 2; ++i) {
      Instance& part =
          *makeInstance(_arena, *makePath(_arena, "root", "T_Base"), *_repository.find("T_Base"));
      const CMPIData name = dataOf(makeString(_arena, "part " + std::to_string(i)));
      part.ft->setProperty(&part, "Name", &name.value, name.type);
      parts.body().elements[i] = dataOf(&part);
    }
    const CMPIData data = dataOf(&parts);
    out.ft->addArg(&out, "Parts", &data.value, data.type);
  }

  Reply stored(PropertyList properties) {
    asked.reset();
    if (properties) asked.emplace();
    for (; properties && *properties; ++properties) asked->emplace_back(*properties);
    Reply reply;
    if (_instance) reply.result()->body().append(dataOf(_instance));
    return reply;
  }
  static Reply refused() {
    Reply reply;
    reply.code = CMPI_RC_ERR_ACCESS_DENIED;
    reply.message = "not \"you\"";
    return reply;
  }

  ClassRepository _repository = ClassRepository::fromText(kSchema, "test.mof");
  Arena _arena;
  Instance* _instance = nullptr;
};

inline std::string request(const std::string& call) {
  return "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"a&amp;1\" "
         "PROTOCOLVERSION=\"1.0\"><SIMPLEREQ>" +
         call + "</SIMPLEREQ></MESSAGE></CIM>";
}

inline std::string intrinsic(const std::string& name, const std::string& parameters) {
  return request(
      "<IMETHODCALL NAME=\"" + name +
      "\"><LOCALNAMESPACEPATH><NAMESPACE NAME=\"root\"/><NAMESPACE NAME=\"jxv\"/></LOCALNAMESPACEPATH>" +
      parameters + "</IMETHODCALL>");
}

inline std::string parameter(const std::string& name, const std::string& value) {
  return "<IPARAMVALUE NAME=\"" + name + "\">" + value + "</IPARAMVALUE>";
}

inline std::string property(const std::string& name, const std::string& value) {
  return "<PROPERTY NAME=\"" + name + "\"><VALUE>" + value + "</VALUE></PROPERTY>";
}

inline const std::string kName =
    "<INSTANCENAME CLASSNAME=\"T_Thing\"><KEYBINDING "
    "NAME=\"Name\"><KEYVALUE>x</KEYVALUE></KEYBINDING></INSTANCENAME>";
inline const std::string kThing = parameter("ClassName", "<CLASSNAME NAME=\"T_Thing\"/>");

class CimxmlTest : public testing::Test {
 protected:
  std::string ask(const std::string& operation, const std::string& parameters) {
    return answer(intrinsic(operation, parameters), _store);
  }
  /// The instance as it comes back when these elements were stored.
  std::string stored(const std::string& properties) {
    const std::string created =
        ask("CreateInstance",
            parameter("NewInstance", "<INSTANCE CLASSNAME=\"T_Thing\">" + properties + "</INSTANCE>"));
    EXPECT_THAT(created, testing::HasSubstr("<INSTANCENAME CLASSNAME=\"T_Thing\">"));
    return ask("GetInstance", parameter("InstanceName", kName));
  }

  Store _store;
};

}  // namespace ZebManager
