#pragma once

#include <gtest/gtest.h>

#include "InstanceText.h"
#include "Records.h"
#include "cmpicpp/CmpiInstance.h"
#include "cmpicpp/CmpiStatus.h"
#include "support/RecordingLogSink.h"

namespace ZEB::test {

/// A row of a property table whose value is not known, and what that changes; all other rows stay.
template <class Facts>
struct UnknownRow {
  const char* name;
  void (*forget)(Facts&);
  Table changes;

  friend void PrintTo(const UnknownRow& row, std::ostream* out) { *out << row.name; }
};

/// Names the tests of a parametrised suite after their rows.
inline constexpr auto kByName = [](const auto& info) { return std::string(info.param.name); };

/// What classes are made with, beside their own arguments.
class ClassTest : public testing::Test {
 protected:
  const std::string nameSpace = "root/jxv";
  RecordedLogger recorded;
};

}  // namespace ZEB::test
