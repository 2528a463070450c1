#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

#include "common/Logger.h"

namespace ZEB {
namespace {

/// One conversion of a format: "%", flags, width, precision, length modifiers (passed over), conversion.
struct Conversion {
  std::string flags;  ///< flags, width and precision as they stand
  char kind = '\0';
  const char* end = nullptr;
};

Conversion parseConversion(const char* percent) {
  Conversion conversion;
  const char* at = percent + 1;
  // Widths beyond a few digits can only be a mistake, and would be written out.
  constexpr std::size_t kLongest = 8;
  while (*at && std::strchr("-+ #0123456789.", *at) && conversion.flags.size() < kLongest)
    conversion.flags += *at++;
  while (*at && std::strchr("hlLqjzt", *at)) ++at;
  conversion.kind = *at;
  conversion.end = *at ? at + 1 : at;
  return conversion;
}

template <class Value>
void print(std::string& out, const std::string& format, Value value) {
  std::array<char, 512> buffer{};
  const int written = std::snprintf(buffer.data(), buffer.size(), format.c_str(), value);
  if (written > 0) out.append(buffer.data(), std::min(static_cast<std::size_t>(written), buffer.size() - 1));
}

bool isControl(unsigned char c, unsigned char next) {
  return c < ' ' || c == 0x7f || (c == 0xc2 && next >= 0x80 && next < 0xa0);  // the last in UTF-8
}

/// What a client wrote does not begin a line of its own, nor steer a terminal, nor fill the log.
std::string shown(std::string_view text) {
  constexpr std::size_t kLongest = 500;
  const std::string_view part = text.substr(0, kLongest);
  std::string out;
  for (std::size_t i = 0; i < part.size(); ++i) {
    const auto c = static_cast<unsigned char>(part[i]);
    if (isControl(c, static_cast<unsigned char>(i + 1 < part.size() ? part[i + 1] : 0))) {
      print(out, "\\x%02x", static_cast<unsigned>(c));
    } else {
      out += part[i];
    }
  }
  return part.size() < text.size() ? out + "..." : out;
}

/// Text with the padding and truncation that its conversion asks for.
void printText(std::string& out, const std::string& flags, std::string_view text) {
  if (flags.empty()) {
    out += shown(text);
  } else {
    print(out, "%" + flags + "s", shown(text).c_str());
  }
}

bool isIntegerKind(char kind) {
  return kind != '\0' && std::strchr("diuxXoc", kind) != nullptr;
}
bool isRealKind(char kind) {
  return kind != '\0' && std::strchr("fFgGeE", kind) != nullptr;
}

struct Printer {
  std::string& out;
  const Conversion& conversion;

  void operator()(std::int64_t value) const { integer(value, "lld"); }
  void operator()(std::uint64_t value) const { integer(value, "llu"); }
  void operator()(double value) const {
    const char kind = isRealKind(conversion.kind) ? conversion.kind : 'g';
    print(out, "%" + conversion.flags + kind, value);
  }
  void operator()(std::string_view text) const { printText(out, conversion.flags, text); }

 private:
  template <class Value>
  void integer(Value value, const char* natural) const {
    if (conversion.kind == 'c') {
      out += static_cast<char>(value);
    } else if (conversion.kind == 'x' || conversion.kind == 'X' || conversion.kind == 'o') {
      print(out, "%" + conversion.flags + "ll" + conversion.kind, static_cast<unsigned long long>(value));
    } else if (isIntegerKind(conversion.kind)) {
      print(out, "%" + conversion.flags + natural, static_cast<long long>(value));
    } else {
      print(out, std::string("%") + natural, static_cast<long long>(value));
    }
  }
};

}  // namespace

std::string formatLog(const char* format, const LogArgument* arguments, std::size_t count) {
  std::string out;
  std::size_t next = 0;
  while (*format) {
    if (*format != '%') {
      out += *format++;
    } else if (format[1] == '%') {
      out += '%';
      format += 2;
    } else {
      const Conversion conversion = parseConversion(format);
      if (next < count && conversion.kind) {
        std::visit(Printer{out, conversion}, arguments[next++].value());
      } else {
        out.append(format, conversion.end);
      }
      format = conversion.end;
    }
  }
  return out;
}

}  // namespace ZEB
