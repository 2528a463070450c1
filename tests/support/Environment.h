#pragma once

#include <cstdlib>
#include <optional>
#include <string>

#include "common/Configuration.h"

namespace ZEB::test {

/// An environment variable as one test wants it, and as it was before when the test is over. The
/// configuration is read anew after each change.
class Environment {
 public:
  Environment(const char* name, const std::string& value) : _name(name) {
    if (const char* before = std::getenv(name)) _before = before;
    setenv(name, value.c_str(), 1);
    Configuration::reset();
  }
  ~Environment() {
    if (_before) {
      setenv(_name.c_str(), _before->c_str(), 1);
    } else {
      unsetenv(_name.c_str());
    }
    Configuration::reset();
  }
  Environment(const Environment&) = delete;
  Environment& operator=(const Environment&) = delete;

 private:
  std::string _name;
  std::optional<std::string> _before;
};

}  // namespace ZEB::test
