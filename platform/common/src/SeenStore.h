#pragma once

#include <functional>
#include <string>

#include "common/DataStore.h"

namespace ZEB {

/// What is in a store's file, for who looks and leaves no trace: nothing is made, brought to the current
/// format, put aside or kept.
class SeenStore : public DataStore {
 public:
  /// `report` is told what an object manager that opened the store would meet; an empty text when nothing is
  /// wrong. A file that is not there yet is nothing wrong, where it can be made.
  SeenStore(const std::string& file, const std::function<void(const std::string& failure)>& report);

  std::shared_ptr<const Values> values() override { return _values; }
  void addDefaults(const Values&) override {}

 protected:
  void set(const std::string& key, std::uint32_t value) override;

 private:
  void read(const std::string& file);

  std::shared_ptr<const Values> _values = std::make_shared<Values>();
};

}  // namespace ZEB
