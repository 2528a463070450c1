// A namespace of many instances, and requests that pull them.
#pragma once

#include <pugixml.hpp>
#include <set>
#include <utility>

#include "CimxmlFixture.h"
#include "cimxml/EnumerationSteps.h"
#include "pull/PulledOperations.h"

namespace ZebManager {

inline constexpr char kManySchema[] = R"(
  class M_Base { [Key] string Name; uint32 Number; };
  class M_Thing : M_Base { string Colour; };
  class M_Quiet : M_Thing { };
  [Association] class M_Link { [Key] M_Base REF One; [Key] M_Base REF Other; };)";

/// As many things as are wanted, the odd ones red and the even ones blue, the first linked to all others; and
/// quiet ones, from 101 on, which are enumerated and never named.
class Many : public Namespace {
 public:
  explicit Many(unsigned count) : _count(count) {}

  const ClassRepository& repository() const override { return _repository; }
  Reply enumerateInstances(std::string_view className, PropertyList) override {
    Reply reply;
    const bool quietOnes = sameName(className, "M_Quiet");
    for (unsigned i = 1; i <= _count && !quietOnes; ++i) addInstance(reply, i);
    for (unsigned i = 101; i <= 100 + quiet; ++i) addInstance(reply, i, "M_Quiet");
    return reply;
  }
  Reply enumerateInstanceNames(std::string_view) override { return names(1); }
  Reply getInstance(const CMPIObjectPath& path, PropertyList properties) override {
    ++fetched;
    Reply reply;
    const PathBody& body = as<ObjectPath>(&path)->body();
    if (sameName(body.className, "M_Link")) return refused(CMPI_RC_ERR_NOT_SUPPORTED);
    const auto number = static_cast<unsigned>(
        std::stoul(std::string(textOf(body.keys.find("Name")->data.value.string)).substr(6)));
    if (gone.contains(number)) return refused(CMPI_RC_ERR_NOT_FOUND);
    if (broken.contains(number)) return refused(CMPI_RC_ERR_FAILED);
    lastList.clear();
    for (; properties && *properties; ++properties) lastList.emplace_back(*properties);
    addInstance(reply, number);
    return reply;
  }
  Reply createInstance(const CMPIObjectPath&, const CMPIInstance&) override { return refused(); }
  Reply modifyInstance(const CMPIObjectPath&, const CMPIInstance&, PropertyList) override {
    return refused();
  }
  Reply deleteInstance(const CMPIObjectPath&) override { return refused(); }
  Reply associators(const CMPIObjectPath&, const AssociationFilter&, PropertyList) override {
    return refused();
  }
  Reply associatorNames(const CMPIObjectPath&, const AssociationFilter& filter) override {
    asked = filter;
    return names(2);
  }
  Reply references(const CMPIObjectPath&, const AssociationFilter&, PropertyList) override {
    return refused();
  }
  Reply referenceNames(const CMPIObjectPath&, const AssociationFilter& filter) override {
    asked = filter;
    return names(2);
  }
  Reply invokeMethod(const CMPIObjectPath&, const char*, const CMPIArgs&, CMPIArgs&) override {
    return refused();
  }

  std::set<unsigned> gone, broken;
  unsigned fetched = 0, quiet = 0;
  std::vector<std::string> lastList;
  AssociationFilter asked;

 private:
  static Reply refused(CMPIrc code = CMPI_RC_ERR_NOT_SUPPORTED) {
    Reply reply;
    reply.code = code;
    reply.message = "no";
    return reply;
  }

  ObjectPath& path(Arena& arena, unsigned number, const char* className = "M_Thing") const {
    ObjectPath& path = *makePath(arena, "root/jxv", className);
    path.body().keys.append(arena, "Name").data =
        dataOf(makeString(arena, "thing " + std::to_string(number)));
    return path;
  }

  Reply names(unsigned first) const {
    Reply reply;
    ListBody& list = reply.result()->body();
    for (unsigned i = first; i <= _count; ++i) list.append(dataOf(&path(*list.keep, i)));
    return reply;
  }

  void addInstance(Reply& reply, unsigned number, const char* className = "M_Thing") const {
    ListBody& list = reply.result()->body();
    Arena& arena = *list.keep;
    Instance& instance = *makeInstance(arena, path(arena, number, className), *_repository.find(className));
    const auto set = [&](const char* name, const CMPIData& data) {
      instance.ft->setProperty(&instance, name, &data.value, data.type);
    };
    set("Name", dataOf(makeString(arena, "thing " + std::to_string(number))));
    CMPIValue value{};
    value.uint32 = number;
    set("Number", dataOf(CMPI_uint32, value));
    set("Colour", dataOf(makeString(arena, number % 2 == 1 ? "red" : "blue")));
    list.append(dataOf(&instance));
  }

  const ClassRepository _repository = ClassRepository::fromText(kManySchema, "many.mof");
  const unsigned _count;
};

/// What an answer holds.
struct Pulled {
  std::vector<unsigned> numbers;  ///< of the instances, or in the names of paths
  std::string context;
  std::string end;  ///< as it stands there
  int error = 0;
  std::string text;
};

class PullTest : public testing::Test {
 protected:
  explicit PullTest(unsigned count = 5, const PullLimits& limits = {}) : things(count), operations(limits) {}

  Pulled ask(const std::string& operation, const std::string& parameters, const std::string& user = "ann",
             const std::string& nameSpace = "root/jxv") {
    const std::string body = intrinsic(operation, parameters);
    CimMessage message = readMessage(body);
    message.nameSpace = nameSpace;
    EXPECT_TRUE(PulledOperations::have(message)) << operation;
    return read(operations.answer(body, message, user, [this](const std::string& step) {
      EXPECT_TRUE(isStep(step));
      if (const auto once = std::exchange(during, nullptr)) once();
      return performStep(step, things);
    }));
  }

  Pulled pull(const std::string& context, const std::string& most,
              const std::string& operation = "PullInstancesWithPath", const std::string& user = "ann") {
    return ask(operation,
               parameter("EnumerationContext", "<VALUE>" + context + "</VALUE>") +
                   parameter("MaxObjectCount", "<VALUE>" + most + "</VALUE>"),
               user);
  }

  static Pulled read(const std::string& text) {
    Pulled pulled;
    pulled.text = text;
    pugi::xml_document document;
    EXPECT_TRUE(document.load_string(text.c_str())) << text;
    const pugi::xml_node response = document.child("CIM").child("MESSAGE").child("SIMPLERSP").first_child();
    EXPECT_STREQ(response.name(), "IMETHODRESPONSE");
    pulled.error = response.child("ERROR").attribute("CODE").as_int();
    for (const pugi::xml_node element : response.child("IRETURNVALUE").children()) {
      const auto numbers = element.select_nodes(".//PROPERTY[@NAME='Number']/VALUE");
      for (const auto& number : numbers) pulled.numbers.push_back(number.node().text().as_uint());
      if (std::string(element.name()) != "INSTANCEPATH") continue;
      const std::string name = element.select_node(".//KEYVALUE").node().text().get();
      pulled.numbers.push_back(static_cast<unsigned>(std::stoul(name.substr(6))));
    }
    for (const pugi::xml_node value : response.children("PARAMVALUE")) {
      const std::string name = value.attribute("NAME").value();
      if (name == "EnumerationContext") pulled.context = value.child("VALUE").text().get();
      if (name == "EndOfSequence") pulled.end = value.child("VALUE").text().get();
    }
    return pulled;
  }

  Many things;
  PulledOperations operations;
  std::function<void()> during;  ///< in the middle of the next step
};

inline const std::string kThings = parameter("ClassName", "<CLASSNAME NAME=\"M_Base\"/>");
inline std::string value(const std::string& name, const std::string& text) {
  return parameter(name, "<VALUE>" + text + "</VALUE>");
}

}  // namespace ZebManager
