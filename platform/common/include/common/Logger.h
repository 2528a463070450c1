#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <type_traits>
#include <variant>

namespace ZEB {

enum class LogLevel : std::uint8_t { Error, Warn, Info };

/// Where log lines go. Called from any thread, several at a time.
class LogSink {
 public:
  virtual ~LogSink() = default;

  /// `source` names who speaks, such as "ZEBEthernetPort:ZEB_EthernetPort"; `text` is one line.
  virtual void write(LogLevel level, std::string_view source, std::string_view text) = 0;
};

/// An argument of a log line. Text is only looked at until the call returns.
class LogArgument {
 public:
  template <class T>
  requires std::is_integral_v<T> LogArgument(T value) : _value(widen(value)) {}
  template <class T>
  requires std::is_enum_v<T> LogArgument(T value)
      : LogArgument(static_cast<std::underlying_type_t<T>>(value)) {}
  LogArgument(double value) : _value(value) {}
  LogArgument(std::string_view text) : _value(text) {}
  LogArgument(const std::string& text) : _value(std::string_view(text)) {}
  LogArgument(const char* text) : _value(text ? std::string_view(text) : std::string_view("(null)")) {}

  using Value = std::variant<std::int64_t, std::uint64_t, double, std::string_view>;
  const Value& value() const { return _value; }

 private:
  template <class T>
  static Value widen(T value) {
    if constexpr (std::is_signed_v<T>) {
      return std::int64_t{value};
    } else {
      return std::uint64_t{value};
    }
  }

  Value _value;
};

/// A printf-style format filled with typed arguments: %d and %i decimal, %u the same, %x hexadecimal, %s and
/// %S text, %c a character, %f %g %e floating point, %% a percent sign; flags, width and precision as in
/// printf, length modifiers are passed over. An argument of another kind than its conversion is written in
/// its own way, a conversion without an argument stays as it stands, a surplus argument is ignored. Text may
/// come from a client: control characters are written as \xNN, and 500 bytes of each at most.
std::string formatLog(const char* format, const LogArgument* arguments, std::size_t count);

/// Writes lines for one source to a sink, if their level is wanted. A cheap handle: copies share the sink and
/// the source's name. Safe to use from several threads, but for `appendLogSource` and assignment.
class Logger {
 public:
  /// Without a name, to the process's sink.
  Logger();
  explicit Logger(std::string_view name);
  /// To a sink of its own, with the most detailed level that it wants.
  Logger(std::string_view name, std::shared_ptr<LogSink> sink, LogLevel level);

  /// Lengthens this handle's source name. Handles that were lengthened alike share one name.
  void appendLogSource(std::string_view source);

  const std::string& source() const;
  bool wants(LogLevel level) const;

  template <class... Arguments>
  void info(const char* format, const Arguments&... arguments) const {
    log(LogLevel::Info, format, arguments...);
  }
  template <class... Arguments>
  void warn(const char* format, const Arguments&... arguments) const {
    log(LogLevel::Warn, format, arguments...);
  }
  template <class... Arguments>
  void error(const char* format, const Arguments&... arguments) const {
    log(LogLevel::Error, format, arguments...);
  }

 private:
  struct Source;

  template <class... Arguments>
  void log(LogLevel level, const char* format, const Arguments&... arguments) const {
    if (!wants(level)) return;
    const LogArgument list[] = {LogArgument(arguments)..., LogArgument(0)};
    write(level, format, list, sizeof...(arguments));
  }
  void write(LogLevel level, const char* format, const LogArgument* arguments, std::size_t count) const;

  std::shared_ptr<Source> _source;
};

/// A provider's logger with a class's log source behind its own.
Logger classLogger(Logger logger, std::string_view className);

/// Replaces the sink and level of the loggers that have no sink of their own; a null sink brings back what
/// the configuration asks for.
void setProcessLogSink(std::shared_ptr<LogSink> sink, LogLevel level);

/// To syslog(3), facility daemon.
std::shared_ptr<LogSink> makeSyslogSink();

/// To standard error.
std::shared_ptr<LogSink> makeStandardErrorSink();

}  // namespace ZEB
