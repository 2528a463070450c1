#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <pugixml.hpp>
#include <string>

#include "cimxml/Answer.h"
#include "cimxml/EnumerationSteps.h"
#include "pull/PulledOperations.h"
#include "values/Values.h"

namespace {

using namespace ZebManager;

constexpr char kSchema[] = R"(
  class P_Thing { [Key] string Name; datetime When; uint16 Numbers[]; real64 Real; char16 Letter; boolean Flag;
    uint32 Do([In] uint32 Count, [In] P_Thing REF To, [Out] string Said); };
  [Association] class P_Link { [Key] P_Thing REF One; [Key] P_Thing REF Other; };)";

/// Gives back what it gets, so that everything that is read is written, too.
class Echo : public Namespace {
 public:
  explicit Echo(const ClassRepository& repository) : _repository(repository) {}

  const ClassRepository& repository() const override { return _repository; }
  Reply enumerateInstances(std::string_view, PropertyList) override { return {}; }
  Reply enumerateInstanceNames(std::string_view) override { return {}; }
  Reply getInstance(const CMPIObjectPath& path, PropertyList) override { return instanceAt(path); }
  Reply createInstance(const CMPIObjectPath& path, const CMPIInstance&) override { return pathOf(path); }
  Reply modifyInstance(const CMPIObjectPath& path, const CMPIInstance& instance, PropertyList) override {
    Reply reply = pathOf(path);
    append(reply, dataOf(as<Instance>(&instance)));
    return reply;
  }
  Reply deleteInstance(const CMPIObjectPath&) override { return {}; }
  Reply associators(const CMPIObjectPath& path, const AssociationFilter&, PropertyList) override {
    return instanceAt(path);
  }
  Reply associatorNames(const CMPIObjectPath& path, const AssociationFilter&) override {
    return pathOf(path);
  }
  Reply references(const CMPIObjectPath& path, const AssociationFilter&, PropertyList) override {
    return instanceAt(path);
  }
  Reply referenceNames(const CMPIObjectPath& path, const AssociationFilter&) override { return pathOf(path); }
  Reply invokeMethod(const CMPIObjectPath& path, const char*, const CMPIArgs& in, CMPIArgs& out) override {
    as<Args>(&out)->body().values = as<Args>(&in)->body().values;
    return pathOf(path);
  }

 private:
  static void append(Reply& reply, const CMPIData& data) {
    ListBody& list = reply.result()->body();
    list.append(copyData(*list.keep, data));
  }
  static Reply pathOf(const CMPIObjectPath& path) {
    Reply reply;
    append(reply, dataOf(as<ObjectPath>(&path)));
    return reply;
  }
  Reply instanceAt(const CMPIObjectPath& path) const {
    Reply reply;
    const ObjectPath& own = *as<ObjectPath>(&path);
    append(reply, dataOf(makeInstance(reply.callMemory(), own, *_repository.find(own.body().className))));
    return reply;
  }

  const ClassRepository& _repository;
};

/// What a server answers: operations that pull have their own.
std::string answered(std::string_view body, Echo& target) {
  static PulledOperations pulled(PullLimits{});
  const CimMessage message = readMessage(body);
  static_cast<void>(withNameSpace(body, "root/cimv2", "root/jxv"));
  if (!PulledOperations::have(message)) return answer(body, target);
  return pulled.answer(body, message, "user",
                       [&](const std::string& step) { return performStep(step, target); });
}

/// The bytes as a step and as an answer to one: refused, or performed.
void asStep(std::string_view bytes, Echo& target) {
  try {
    if (isStep(bytes)) static_cast<void>(performStep(bytes, target));
    static_cast<void>(readFetched(bytes));
  } catch (const std::runtime_error&) {
    // what it is for
  }
  try {
    static_cast<void>(readOpened(bytes));
  } catch (const std::runtime_error&) {
  }
}

}  // namespace

/// The bytes as a request: refused, or answered with a document that can be read.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static const auto repository = ClassRepository::fromText(kSchema, "fuzz.mof");
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  Echo target(repository);
  asStep(bytes, target);
  try {
    const std::string document = answered(bytes, target);
    pugi::xml_document read;
    if (!read.load_string(document.c_str())) std::abort();
  } catch (const MessageError& error) {
    if (error.status < 400) std::abort();
  }
  return 0;
}
