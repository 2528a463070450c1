#pragma once

#include <string_view>
#include <vector>

#include "cmpicpp/CmpiData.h"

namespace CmpiCpp {

/// Named arguments of an extrinsic method.
class CmpiArgs {
 public:
  struct Argument {
    CmpiName name;
    CmpiData value;
  };

  void setArg(CmpiName name, CmpiData value);
  /// Null when there is no argument of that name.
  const CmpiData* findArg(std::string_view name) const;
  const std::vector<Argument>& arguments() const { return _arguments; }

 private:
  std::vector<Argument> _arguments;
};

}  // namespace CmpiCpp
