// A provider for tests of the object manager, straight on the C interface.
//
// Environment: ZEB_TEST_REFUSE makes the factories give null, with its text as the message (none when it is
// empty); ZEB_TEST_TRACE names a file that gets a line for each clean-up and each modification.
#include <chrono>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>

#include "TestThings.h"

namespace {

using namespace ZebTestPlugin;

constexpr CMPIStatus kOk = {CMPI_RC_OK, nullptr};

CMPIStatus failure(CMPIrc code, const char* message) {
  return {code, theBroker->eft->newString(theBroker, message, nullptr)};
}

void trace(const std::string& line) {
  if (const char* file = std::getenv("ZEB_TEST_TRACE")) std::ofstream(file, std::ios::app) << line << "\n";
}

std::string textOf(const CMPIData& data) {
  if ((data.state & CMPI_nullValue) || data.type != CMPI_string) return {};
  return data.value.string->ft->getCharPtr(data.value.string, nullptr);
}

std::string classOf(const CMPIObjectPath* path) {
  CMPIString* name = path->ft->getClassName(path, nullptr);
  return name->ft->getCharPtr(name, nullptr);
}

// Instances.

struct Row {
  const char* className;
  const char* name;
};

constexpr Row kRows[] = {{"T_Thing", "one \"1\""}, {"T_Special", "two"}};

CMPIStatus enumerateInstanceNames(CMPIInstanceMI*, const CMPIContext*, const CMPIResult* result,
                                  const CMPIObjectPath* path) {
  for (const Row& row : kRows) {
    if (classOf(path) == row.className)
      result->ft->returnObjectPath(result, thingPath(row.className, row.name));
  }
  if (classOf(path) == "T_Link") result->ft->returnObjectPath(result, linkPath());
  return result->ft->returnDone(result);
}

CMPIStatus enumerateInstances(CMPIInstanceMI*, const CMPIContext*, const CMPIResult* result,
                              const CMPIObjectPath* path, const char**) {
  if (classOf(path) == "T_Numbered") return failure(CMPI_RC_ERR_FAILED, "not\ntoday");
  for (const Row& row : kRows) {
    if (classOf(path) == row.className) result->ft->returnInstance(result, thing(row.className, row.name));
  }
  if (classOf(path) == "T_Link") result->ft->returnInstance(result, link());
  return result->ft->returnDone(result);
}

CMPIStatus getInstance(CMPIInstanceMI*, const CMPIContext*, const CMPIResult* result,
                       const CMPIObjectPath* path, const char**) {
  const std::string name = textOf(path->ft->getKey(path, "Name", nullptr));
  for (const Row& row : kRows) {
    if (classOf(path) == row.className && name == row.name) {
      result->ft->returnInstance(result, thing(row.className, row.name));
      return result->ft->returnDone(result);
    }
  }
  return {CMPI_RC_ERR_NOT_FOUND, nullptr};
}

CMPIStatus createInstance(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*,
                          const CMPIInstance*) {
  return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
}

CMPIStatus modifyInstance(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*,
                          const CMPIInstance* instance, const char** properties) {
  std::string line = "modify";
  for (const char** name = properties; name && *name; ++name) {
    const CMPIData value = instance->ft->getProperty(instance, *name, nullptr);
    line += std::string(" ") + *name + ":" + std::to_string(value.type);
    if (!(value.type & CMPI_ARRAY)) continue;
    for (CMPICount i = 0; i < value.value.array->ft->getSize(value.value.array, nullptr); ++i) {
      const CMPIData element = value.value.array->ft->getElementAt(value.value.array, i, nullptr);
      line += "," + (element.type == CMPI_string ? textOf(element) : std::to_string(element.value.uint16));
    }
  }
  trace(line);
  return kOk;
}

CMPIStatus deleteInstance(CMPIInstanceMI*, const CMPIContext*, const CMPIResult*, const CMPIObjectPath*) {
  return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
}

// Associations: every thing is associated with the special one.

CMPIStatus associators(CMPIAssociationMI*, const CMPIContext*, const CMPIResult* result,
                       const CMPIObjectPath*, const char* associationClass, const char* resultClass,
                       const char* role, const char* resultRole, const char**) {
  trace(std::string("associators ") + (associationClass ? associationClass : "-") + " " +
        (resultClass ? resultClass : "-") + " " + (role ? role : "-") + " " +
        (resultRole ? resultRole : "-"));
  if (!role || std::string(role) == "One") result->ft->returnInstance(result, thing("T_Special", "two"));
  return result->ft->returnDone(result);
}

CMPIStatus associatorNames(CMPIAssociationMI*, const CMPIContext*, const CMPIResult* result,
                           const CMPIObjectPath*, const char*, const char*, const char*, const char*) {
  result->ft->returnObjectPath(result, thingPath("T_Special", "two"));
  return result->ft->returnDone(result);
}

CMPIStatus references(CMPIAssociationMI*, const CMPIContext*, const CMPIResult* result, const CMPIObjectPath*,
                      const char*, const char*, const char**) {
  result->ft->returnInstance(result, link());
  return result->ft->returnDone(result);
}

CMPIStatus referenceNames(CMPIAssociationMI*, const CMPIContext*, const CMPIResult* result,
                          const CMPIObjectPath*, const char*, const char*) {
  result->ft->returnObjectPath(result, linkPath());
  return result->ft->returnDone(result);
}

// Methods.

CMPIStatus deliver(const CMPIContext* context, const std::string& text) {
  CMPIObjectPath* path = theBroker->eft->newObjectPath(theBroker, "root/jxv", "T_Alert", nullptr);
  CMPIInstance* alert = theBroker->eft->newInstance(theBroker, path, nullptr);
  const CMPIValue value = stringValue(text.c_str());
  alert->ft->setProperty(alert, "Text", &value, CMPI_string);
  return theBroker->bft->deliverIndication(theBroker, context, "root/jxv", alert);
}

CMPIUint32 deliverFromThread(const CMPIContext* context, const std::string& text) {
  const CMPIContext* prepared = theBroker->bft->prepareAttachThread(theBroker, context);
  CMPIUint32 code = 99;
  std::thread worker([&] {
    if (theBroker->bft->attachThread(theBroker, prepared).rc != CMPI_RC_OK) return;
    const CMPIGcStat* mark = theBroker->mft->mark(theBroker, nullptr);
    code = static_cast<CMPIUint32>(deliver(prepared, text).rc);
    theBroker->mft->release(theBroker, mark);
    theBroker->bft->detachThread(theBroker, prepared);
  });
  worker.join();
  return code;
}

CMPIUint32 countUp(const CMPIContext* context) {
  const CMPIObjectPath* path = theBroker->eft->newObjectPath(theBroker, "root/jxv", "T_Thing", nullptr);
  CMPIStatus status = kOk;
  CMPIEnumeration* found = theBroker->bft->enumerateInstances(theBroker, context, path, nullptr, &status);
  CMPIUint32 count = 0;
  while (found && found->ft->hasNext(found, nullptr)) {
    const CMPIData item = found->ft->getNext(found, nullptr);
    count +=
        item.type == CMPI_instance && item.value.inst->ft->getPropertyCount(item.value.inst, nullptr) == 17;
  }
  return status.rc == CMPI_RC_OK ? count : 99;
}

CMPIStatus echo(const CMPIResult* result, const CMPIArgs* in, CMPIArgs* out) {
  CMPIStatus status = kOk;
  const CMPIData text = in->ft->getArg(in, "Text", &status);
  if (status.rc == CMPI_RC_OK) out->ft->addArg(out, "Text", &text.value, text.type);
  const CMPIData numbers = in->ft->getArg(in, "Numbers", &status);
  if (status.rc == CMPI_RC_OK) out->ft->addArg(out, "Numbers", &numbers.value, numbers.type);
  in->ft->getArg(in, "Other", &status);
  CMPIValue flag{};
  flag.boolean = status.rc == CMPI_RC_OK;
  out->ft->addArg(out, "HadOther", &flag, CMPI_boolean);
  const CMPIValue answer = stringValue("echo");
  result->ft->returnData(result, &answer, CMPI_string);
  return result->ft->returnDone(result);
}

CMPIStatus invokeMethod(CMPIMethodMI*, const CMPIContext* context, const CMPIResult* result,
                        const CMPIObjectPath*, const char* name, const CMPIArgs* in, CMPIArgs* out) {
  const std::string method = name;
  if (method == "Echo") return echo(result, in, out);
  CMPIValue answer{};
  if (method == "Sleep") {
    const CMPIData time = in->ft->getArg(in, "Milliseconds", nullptr);
    std::this_thread::sleep_for(std::chrono::milliseconds(time.value.uint32));
  } else if (method == "CountUp") {
    answer.uint32 = countUp(context);
  } else if (method == "Alert") {
    answer.uint32 = static_cast<CMPIUint32>(deliver(context, textOf(in->ft->getArg(in, "Text", nullptr))).rc);
  } else if (method == "AlertFromThread") {
    answer.uint32 = deliverFromThread(context, textOf(in->ft->getArg(in, "Text", nullptr)));
  }
  result->ft->returnData(result, &answer, CMPI_uint32);
  return result->ft->returnDone(result);
}

// Indications.

CMPIStatus filterStatus(const char* what, const CMPISelectExp* filter, const char* type) {
  CMPIString* query = filter->ft->getString(filter, nullptr);
  trace(std::string(what) + " " + type + " " + query->ft->getCharPtr(query, nullptr));
  return kOk;
}

CMPIStatus authorizeFilter(CMPIIndicationMI*, const CMPIContext*, const CMPISelectExp* filter,
                           const char* type, const CMPIObjectPath*, const char*) {
  return filterStatus("authorize", filter, type);
}

CMPIStatus mustPoll(CMPIIndicationMI*, const CMPIContext*, const CMPIResult*, const CMPISelectExp*,
                    const char*, const CMPIObjectPath*) {
  return {CMPI_RC_ERR_NOT_SUPPORTED, nullptr};
}

CMPIStatus activateFilter(CMPIIndicationMI*, const CMPIContext*, const CMPISelectExp* filter,
                          const char* type, const CMPIObjectPath*, CMPIBoolean) {
  return filterStatus("activate", filter, type);
}

CMPIStatus deActivateFilter(CMPIIndicationMI*, const CMPIContext*, const CMPISelectExp* filter,
                            const char* type, const CMPIObjectPath*, CMPIBoolean) {
  return filterStatus("deactivate", filter, type);
}

CMPIStatus enableIndications(CMPIIndicationMI*, const CMPIContext*) {
  trace("enable");
  return kOk;
}

CMPIStatus disableIndications(CMPIIndicationMI*, const CMPIContext*) {
  trace("disable");
  return kOk;
}

// Interfaces.

template <class Interface>
CMPIStatus cleanup(Interface*, const CMPIContext*, CMPIBoolean terminating) {
  trace("cleanup " + std::to_string(terminating));
  return kOk;
}

const CMPIInstanceMIFT kInstanceTable = {
    CMPIVersion210,         CMPIVersion210,     "instanceTest", cleanup<CMPIInstanceMI>,
    enumerateInstanceNames, enumerateInstances, getInstance,    createInstance,
    modifyInstance,         deleteInstance,     nullptr,        nullptr};
const CMPIAssociationMIFT kAssociationTable = {
    CMPIVersion210, CMPIVersion210,  "associationTest", cleanup<CMPIAssociationMI>,
    associators,    associatorNames, references,        referenceNames,
    nullptr,        nullptr};
const CMPIMethodMIFT kMethodTable = {CMPIVersion210, CMPIVersion210, "methodTest", cleanup<CMPIMethodMI>,
                                     invokeMethod};
const CMPIIndicationMIFT kIndicationTable = {
    CMPIVersion210, CMPIVersion210, "indicationTest", cleanup<CMPIIndicationMI>, authorizeFilter,
    mustPoll,       activateFilter, deActivateFilter, enableIndications,         disableIndications,
    nullptr,        nullptr,        nullptr};

CMPIInstanceMI theInstanceMI = {nullptr, &kInstanceTable};
CMPIAssociationMI theAssociationMI = {nullptr, &kAssociationTable};
CMPIMethodMI theMethodMI = {nullptr, &kMethodTable};
CMPIIndicationMI theIndicationMI = {nullptr, &kIndicationTable};

template <class Interface>
Interface* create(const CMPIBroker* broker, const char* name, CMPIStatus* status, Interface& made) {
  theBroker = broker;
  const char* const refusal = std::getenv("ZEB_TEST_REFUSE");
  if (!refusal && std::string(name) == "ZEBEthernetPort") return &made;
  if (refusal && *refusal) *status = failure(CMPI_RC_ERR_FAILED, refusal);
  return nullptr;
}

}  // namespace

#define ZEB_EXPORT extern "C" __attribute__((visibility("default")))

ZEB_EXPORT CMPIInstanceMI* _Generic_Create_InstanceMI(const CMPIBroker* broker, const CMPIContext*,
                                                      const char* name, CMPIStatus* status) {
  return create(broker, name, status, theInstanceMI);
}

ZEB_EXPORT CMPIAssociationMI* _Generic_Create_AssociationMI(const CMPIBroker* broker, const CMPIContext*,
                                                            const char* name, CMPIStatus* status) {
  return create(broker, name, status, theAssociationMI);
}

ZEB_EXPORT CMPIMethodMI* _Generic_Create_MethodMI(const CMPIBroker* broker, const CMPIContext*,
                                                  const char* name, CMPIStatus* status) {
  return create(broker, name, status, theMethodMI);
}

ZEB_EXPORT CMPIIndicationMI* _Generic_Create_IndicationMI(const CMPIBroker* broker, const CMPIContext*,
                                                          const char* name, CMPIStatus* status) {
  return create(broker, name, status, theIndicationMI);
}
