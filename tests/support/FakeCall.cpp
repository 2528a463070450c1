// What comes with a call: its context and its result.
#include <algorithm>
#include <utility>

#include "FakeTables.h"

namespace ZEB::test {

namespace {

CMPIData contextGetEntry(const CMPIContext* context, const char* name, CMPIStatus* status) {
  const auto& self = as<FakeContext>(context);
  if (std::find(self.nullTexts.begin(), self.nullTexts.end(), name) != self.nullTexts.end()) {
    answer(status);
    auto* text = of(context).make<FakeString>("");
    text->nullText = true;
    CMPIData entry{CMPI_string, CMPI_goodValue, {}};
    entry.value.string = text;
    return entry;
  }
  const auto found = self.entries.find(name);
  if (found == self.entries.end()) return missing(status, CMPI_RC_ERR_NO_SUCH_PROPERTY);
  answer(status);
  return writeValue(of(context), found->second);
}

CMPICount contextGetEntryCount(const CMPIContext* context, CMPIStatus* status) {
  answer(status);
  return static_cast<CMPICount>(as<FakeContext>(context).entries.size());
}

CMPIStatus contextAddEntry(const CMPIContext* context, const char* name, const CMPIValue* value,
                           const CMPIType type) {
  as<FakeContext>(context).entries[name] = readValue(value, type);
  return kOk;
}

const CMPIContextFT kContextTable = {CMPIVersion200,
                                     Tables::release<FakeContext, CMPIContext>,
                                     Tables::clone<FakeContext, CMPIContext>,
                                     contextGetEntry,
                                     nullptr,
                                     contextGetEntryCount,
                                     contextAddEntry};

template <class Member, class Value>
CMPIStatus keepIn(const CMPIResult* result, Member member, Value&& value) {
  FakeResult& self = as<FakeResult>(result);
  if (self.answer == CMPI_RC_OK) (self.*member).push_back(std::forward<Value>(value));
  return {self.answer, nullptr};
}

CMPIStatus returnData(const CMPIResult* result, const CMPIValue* value, const CMPIType type) {
  return keepIn(result, &FakeResult::data, readValue(value, type));
}

CMPIStatus returnInstance(const CMPIResult* result, const CMPIInstance* instance) {
  return keepIn(result, &FakeResult::instances, as<FakeInstance>(instance).asSent());
}

CMPIStatus returnObjectPath(const CMPIResult* result, const CMPIObjectPath* path) {
  return keepIn(result, &FakeResult::paths, as<FakeObjectPath>(path).value);
}

CMPIStatus returnDone(const CMPIResult* result) {
  ++as<FakeResult>(result).done;
  return kOk;
}

const CMPIResultFT kResultTable = {CMPIVersion200,
                                   Tables::release<FakeResult, CMPIResult>,
                                   Tables::clone<FakeResult, CMPIResult>,
                                   returnData,
                                   returnInstance,
                                   returnObjectPath,
                                   returnDone,
                                   nullptr};

}  // namespace

FakeContext::FakeContext(FakeBroker& broker) : CMPIContext{&broker, &kContextTable} {}
FakeResult::FakeResult(FakeBroker& broker) : CMPIResult{&broker, &kResultTable} {}

}  // namespace ZEB::test
