#pragma once

#include <chrono>
#include <string>

#include "cmpicpp/CmpiData.h"
#include "provider/EntryPoints.h"
#include "support/FakeBroker.h"

namespace ZEB::test {

/// The plug-in as an object manager has it while an object of this class lives: loaded, with indications
/// enabled and its timer running. What cannot be had is a failure of the test.
class LoadedPlugin {
 public:
  explicit LoadedPlugin(FakeBroker& broker);
  ~LoadedPlugin();
  LoadedPlugin(const LoadedPlugin&) = delete;
  LoadedPlugin& operator=(const LoadedPlugin&) = delete;

  /// How many instances of a class are served.
  std::size_t count(const std::string& className);
  /// Whether a class has an instance with that value.
  bool serves(const std::string& className, const std::string& property, const CmpiCpp::CmpiData& value);

 private:
  FakeBroker& _broker;
  void* _library = nullptr;
  CMPIInstanceMI* _instances = nullptr;
  CMPIIndicationMI* _indications = nullptr;
};

}  // namespace ZEB::test
