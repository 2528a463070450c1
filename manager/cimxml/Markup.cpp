#include "cimxml/Markup.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <string>

#include "cimxml/XmlText.h"

namespace ZebManager {
namespace {

constexpr std::array<std::string_view, 5> kEntities = {"amp", "apos", "gt", "lt", "quot"};

/// What is skipped as a whole: nothing in it is a reference.
struct SkippedRow {
  std::string_view begin, end;
};
constexpr std::array kSkipped = {SkippedRow{"<!--", "-->"}, SkippedRow{"<![CDATA[", "]]>"},
                                 SkippedRow{"<?", "?>"}};

/// `digits`: what stands behind "&#".
bool isCharacter(std::string_view digits) {
  const bool hexadecimal = digits.starts_with('x');
  if (hexadecimal) digits.remove_prefix(1);
  std::uint32_t code = 0;
  const auto [end, error] =
      std::from_chars(digits.data(), digits.data() + digits.size(), code, hexadecimal ? 16 : 10);
  return error == std::errc() && end == digits.data() + digits.size() && isXmlCharacter(code);
}

bool isReference(std::string_view name) {
  if (name.starts_with('#')) return isCharacter(name.substr(1));
  return std::find(kEntities.begin(), kEntities.end(), name) != kEntities.end();
}

class Scanner {
 public:
  explicit Scanner(std::string_view rest) : _rest(rest) {}

  void run() {
    while (advanceTo("<&")) {
      if (_rest[0] == '&') {
        takeReference();
      } else if (!takeSkipped()) {
        takeTag();
      }
    }
  }

 private:
  /// To the first of some characters; false when there is none.
  bool advanceTo(const char* characters) {
    _rest.remove_prefix(std::min(_rest.find_first_of(characters), _rest.size()));
    return !_rest.empty();
  }

  void takeReference() {
    const std::size_t length = _rest.find(';');
    if (length == std::string_view::npos || !isReference(_rest.substr(1, length - 1))) {
      throw MarkupError("a reference to something that is not declared");
    }
    _rest.remove_prefix(length + 1);
  }

  bool takeSkipped() {
    for (const auto& [begin, end] : kSkipped) {
      if (!_rest.starts_with(begin)) continue;
      const std::size_t last = _rest.find(end, begin.size());
      _rest.remove_prefix(last == std::string_view::npos ? _rest.size() : last + end.size());
      return true;
    }
    return false;
  }

  /// A tag, or the document type.
  void takeTag() {
    _rest.remove_prefix(1);
    while (advanceTo("\"'>[")) {
      const char found = _rest[0];
      _rest.remove_prefix(1);
      if (found == '>') return;
      if (found == '[') throw MarkupError("declarations in a document type are not read");
      takeQuoted(found);
    }
  }

  void takeQuoted(char quote) {
    const std::array<char, 4> characters = {quote, '&', '<', '\0'};
    while (advanceTo(characters.data())) {
      if (_rest[0] == '<') throw MarkupError("'<' in the value of an attribute");
      if (_rest[0] == '&') {
        takeReference();
      } else {
        return _rest.remove_prefix(1);
      }
    }
  }

  std::string_view _rest;
};

}  // namespace

void checkMarkup(std::string_view body) {
  Scanner(body).run();
}

}  // namespace ZebManager
