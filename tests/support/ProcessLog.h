#pragma once

#include "RecordingLogSink.h"

namespace ZEB::test {

/// Records what loggers without a sink of their own write while this lives.
class ProcessLog {
 public:
  ProcessLog() { setProcessLogSink(sink, LogLevel::Info); }
  ~ProcessLog() { setProcessLogSink(nullptr, LogLevel::Warn); }
  ProcessLog(const ProcessLog&) = delete;
  ProcessLog& operator=(const ProcessLog&) = delete;

  const std::shared_ptr<RecordingLogSink> sink = std::make_shared<RecordingLogSink>();
};

}  // namespace ZEB::test
