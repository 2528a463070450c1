#include "common/Logger.h"

#include <syslog.h>

#include <atomic>
#include <cstdio>
#include <map>
#include <mutex>
#include <utility>

#include "common/Configuration.h"

namespace ZEB {
namespace {

class SyslogSink : public LogSink {
 public:
  void write(LogLevel level, std::string_view source, std::string_view text) override {
    constexpr int kPriorities[] = {LOG_ERR, LOG_WARNING, LOG_INFO};
    syslog(LOG_DAEMON | kPriorities[static_cast<std::size_t>(level)], "%.*s: %.*s",
           static_cast<int>(source.size()), source.data(), static_cast<int>(text.size()), text.data());
  }
};

class StandardErrorSink : public LogSink {
 public:
  void write(LogLevel level, std::string_view source, std::string_view text) override {
    constexpr const char* kNames[] = {"error", "warn", "info"};
    // One call a line, so that lines of several threads do not mix.
    std::fprintf(stderr, "%s: %.*s: %.*s\n", kNames[static_cast<std::size_t>(level)],
                 static_cast<int>(source.size()), source.data(), static_cast<int>(text.size()), text.data());
  }
};

class NoSink : public LogSink {
 public:
  void write(LogLevel /*level*/, std::string_view /*source*/, std::string_view /*text*/) override {}
};

}  // namespace

/// Where the lines of some loggers go. Its level is asked for at every line, so it has to cost nothing.
class LogDestination {
 public:
  LogDestination(std::shared_ptr<LogSink> sink, LogLevel level) : _sink(std::move(sink)), _level(level) {}

  void set(std::shared_ptr<LogSink> sink, LogLevel level) {
    const std::lock_guard lock(_mutex);
    _sink = std::move(sink);
    _level = level;
  }
  bool wants(LogLevel level) const { return level <= _level; }
  std::shared_ptr<LogSink> sink() const {
    const std::lock_guard lock(_mutex);
    return _sink;
  }

 private:
  mutable std::mutex _mutex;
  std::shared_ptr<LogSink> _sink;
  std::atomic<LogLevel> _level;
};

namespace {

std::mutex processMutex;
std::shared_ptr<LogDestination> processDestination;

std::shared_ptr<LogSink> configuredSink() {
  const std::string& target = Configuration::current()->logTarget;
  if (target == "none") return std::make_shared<NoSink>();
  return target == "stderr" ? makeStandardErrorSink() : makeSyslogSink();
}

std::shared_ptr<LogDestination> currentDestination() {
  const std::lock_guard lock(processMutex);
  if (!processDestination) {
    processDestination =
        std::make_shared<LogDestination>(configuredSink(), Configuration::current()->logLevel);
  }
  return processDestination;
}

}  // namespace

// A name with those that were made from it by lengthening, so that a thousand handles of one class share one.
struct Logger::Source {
  std::shared_ptr<LogDestination> destination;
  std::string name;
  std::shared_ptr<Source> shorter;  ///< what it was made from, kept so that others find it there
  std::mutex mutex;
  std::map<std::string, std::weak_ptr<Source>, std::less<>> longer;
};

Logger::Logger() : Logger(std::string_view()) {}

Logger::Logger(std::string_view name) : _source(std::make_shared<Source>()) {
  _source->destination = currentDestination();
  _source->name = name;
}

Logger::Logger(std::string_view name, std::shared_ptr<LogSink> sink, LogLevel level)
    : _source(std::make_shared<Source>()) {
  _source->destination = std::make_shared<LogDestination>(std::move(sink), level);
  _source->name = name;
}

Logger classLogger(Logger logger, std::string_view className) {
  logger.appendLogSource(":");
  logger.appendLogSource(className);
  return logger;
}

void Logger::appendLogSource(std::string_view source) {
  const std::lock_guard lock(_source->mutex);
  const auto known = _source->longer.find(source);
  auto longer = known == _source->longer.end() ? nullptr : known->second.lock();
  if (!longer) {
    longer = std::make_shared<Source>();
    longer->destination = _source->destination;
    longer->name = _source->name + std::string(source);
    longer->shorter = _source;
    _source->longer.insert_or_assign(std::string(source), longer);
  }
  _source.swap(longer);
}

const std::string& Logger::source() const {
  return _source->name;
}

bool Logger::wants(LogLevel level) const {
  return _source->destination->wants(level);
}

void Logger::write(LogLevel level, const char* format, const LogArgument* arguments,
                   std::size_t count) const {
  std::string text = formatLog(format, arguments, count);
  // Some texts end in a line break; a sink writes lines.
  while (!text.empty() && text.back() == '\n') text.pop_back();
  _source->destination->sink()->write(level, _source->name, text);
}

void setProcessLogSink(std::shared_ptr<LogSink> sink, LogLevel level) {
  const auto destination = currentDestination();
  if (sink) {
    destination->set(std::move(sink), level);
  } else {
    destination->set(configuredSink(), Configuration::current()->logLevel);
  }
}

std::shared_ptr<LogSink> makeSyslogSink() {
  return std::make_shared<SyslogSink>();
}

std::shared_ptr<LogSink> makeStandardErrorSink() {
  return std::make_shared<StandardErrorSink>();
}

}  // namespace ZEB
