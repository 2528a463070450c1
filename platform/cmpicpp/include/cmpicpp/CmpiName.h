#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>

namespace CmpiCpp {

/// A name in a string literal. Only the compiler can make one, so the text outlives everything.
class NameLiteral {
 public:
  template <std::size_t Size>
  consteval NameLiteral(const char (&text)[Size]) : _text(text, Size - 1) {}

  constexpr std::string_view view() const { return _text; }
  constexpr const char* c_str() const { return _text.data(); }

 private:
  std::string_view _text;
};

/// The name of a CIM class, property, key, method or role. Names are equal without regard to case (ASCII) and
/// keep the case that they were written in. Made from a literal it owns nothing; otherwise copies share the
/// text.
class CmpiName {
 public:
  CmpiName() = default;
  CmpiName(NameLiteral literal) : _view(literal.view()) {}
  CmpiName(const char* text) : CmpiName(std::string_view(text ? text : "")) {}
  CmpiName(const std::string& text) : CmpiName(std::string_view(text)) {}
  CmpiName(std::string_view text) : _owned(std::make_shared<const std::string>(text)), _view(*_owned) {}

  /// Terminated by a null character.
  const char* c_str() const { return _view.data(); }
  std::string_view view() const { return _view; }
  std::string str() const { return std::string(_view); }
  bool empty() const { return _view.empty(); }

  friend bool operator==(const CmpiName& a, const CmpiName& b) { return equal(a._view, b._view); }

  static bool equal(std::string_view a, std::string_view b);
  static std::size_t hash(std::string_view name);

 private:
  std::shared_ptr<const std::string> _owned;
  std::string_view _view{""};  // NOLINT(readability-redundant-string-init): `c_str` needs its characters
};

}  // namespace CmpiCpp

template <>
struct std::hash<CmpiCpp::CmpiName> {
  std::size_t operator()(const CmpiCpp::CmpiName& name) const { return CmpiCpp::CmpiName::hash(name.view()); }
};
