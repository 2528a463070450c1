// Many texts that are much alike, in little memory.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace ZebManager {

/// Bytes that are no list of texts.
class TextListError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Each text is kept as what it does not share with the one before, at its begin and at its end.
class TextList {
 public:
  void append(std::string_view text);

  std::uint64_t count() const { return _count; }
  const std::string& bytes() const { return _bytes; }
  std::string takeBytes() && { return std::move(_bytes); }

 private:
  std::string _bytes;
  std::string _last;
  std::uint64_t _count = 0;
};

/// Reads a list from its begin. The bytes have to outlive it.
class TextListReader {
 public:
  explicit TextListReader(std::string_view bytes) : _rest(bytes) {}

  bool atEnd() const { return _rest.empty(); }
  /// Throws TextListError at the end, and for bytes that no TextList wrote.
  const std::string& next();
  std::uint64_t nextNumber();

 private:
  std::uint64_t takeNumber();

  std::string_view _rest;
  std::string _text;
};

}  // namespace ZebManager
