#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "cmpi/cmpi.h"
#include "cmpicpp/CmpiArgs.h"
#include "cmpicpp/CmpiInstance.h"

namespace ZEB::test {

class FakeBroker;

/// What the fake object manager makes. Each object is the C structure with its value behind it; the
/// structure's `hdl` is the broker.
struct FakeObject {
  virtual ~FakeObject() = default;
  /// Made by `clone`: it lives until its own `release`.
  bool cloned = false;
};

struct FakeString : CMPIString, FakeObject {
  FakeString(FakeBroker& broker, std::string theText);
  std::string text;
  /// Some object managers have strings without characters.
  bool nullText = false;
};

struct FakeObjectPath : CMPIObjectPath, FakeObject {
  FakeObjectPath(FakeBroker& broker, CmpiCpp::CmpiObjectPath theValue);
  CmpiCpp::CmpiObjectPath value;
};

struct FakeInstance : CMPIInstance, FakeObject {
  FakeInstance(FakeBroker& broker, CmpiCpp::CmpiInstance theValue);
  /// What was set, in the order of setting.
  CmpiCpp::CmpiInstance value;
  /// What the object manager began with and nobody has set since.
  std::vector<CmpiCpp::CmpiInstance::Property> prefilled;
  /// Names that the object manager was told to keep to.
  std::optional<std::vector<CmpiCpp::CmpiName>> filter;

  bool isWanted(const CmpiCpp::CmpiName& name) const;
  /// What a client gets. That a property has no value it is not told.
  CmpiCpp::CmpiInstance asSent() const;
};

struct FakeArray : CMPIArray, FakeObject {
  FakeArray(FakeBroker& broker, CmpiCpp::CmpiArray theValue);
  CmpiCpp::CmpiArray value;
};

struct FakeDateTime : CMPIDateTime, FakeObject {
  FakeDateTime(FakeBroker& broker, CmpiCpp::CmpiDateTime theValue);
  CmpiCpp::CmpiDateTime value;
};

struct FakeArgs : CMPIArgs, FakeObject {
  FakeArgs(FakeBroker& broker, CmpiCpp::CmpiArgs theValue);
  CmpiCpp::CmpiArgs value;
};

struct FakeContext : CMPIContext, FakeObject {
  explicit FakeContext(FakeBroker& broker);
  std::map<std::string, CmpiCpp::CmpiData> entries;
  /// Entries whose string has no characters.
  std::vector<std::string> nullTexts;
};

/// Keeps what a provider returns, in the order of returning.
struct FakeResult : CMPIResult, FakeObject {
  explicit FakeResult(FakeBroker& broker);
  std::vector<CmpiCpp::CmpiInstance> instances;
  std::vector<CmpiCpp::CmpiObjectPath> paths;
  std::vector<CmpiCpp::CmpiData> data;
  int done = 0;
  /// Answer of every `return...` from now on.
  CMPIrc answer = CMPI_RC_OK;
};

/// The value that a provider passed, read from the broker's objects; a null pointer is a null value.
CmpiCpp::CmpiData readValue(const CMPIValue* value, CMPIType type);
/// The value for a provider, as new objects of the current call.
CMPIData writeValue(FakeBroker& broker, const CmpiCpp::CmpiData& data);

}  // namespace ZEB::test
