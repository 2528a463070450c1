#pragma once

#include <string>
#include <utility>

#include "RecordingLogSink.h"

namespace ZEB::test {

/// Throws `thrown` in place of writing the first line that begins so: whoever logs fails at that point.
template <class Thrown>
class ThrowingSink : public RecordingLogSink {
 public:
  ThrowingSink(std::string beginning, Thrown thrown)
      : _beginning(std::move(beginning)), _thrown(std::move(thrown)) {}

  void write(LogLevel level, std::string_view source, std::string_view text) override {
    if (text.starts_with(_beginning) && !std::exchange(_done, true)) throw _thrown;
    RecordingLogSink::write(level, source, text);
  }

 private:
  const std::string _beginning;
  const Thrown _thrown;
  bool _done = false;
};

}  // namespace ZEB::test
