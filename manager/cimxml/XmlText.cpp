#include "cimxml/XmlText.h"

#include <algorithm>
#include <array>

namespace ZebManager {
namespace {

constexpr std::string_view kReplacement = "\xef\xbf\xbd";

struct Character {
  std::uint32_t code = 0;
  std::size_t length = 0;  ///< bytes; 0 when they are no UTF-8
};

struct LeadRow {
  unsigned char mask, lead;
  std::size_t length;
  std::uint32_t lowest;
};

constexpr LeadRow kLeads[] = {
    {0x80, 0x00, 1, 0}, {0xe0, 0xc0, 2, 0x80}, {0xf0, 0xe0, 3, 0x800}, {0xf8, 0xf0, 4, 0x10000}};

Character decode(std::string_view text) {
  const auto first = static_cast<unsigned char>(text[0]);
  for (const LeadRow& row : kLeads) {
    if ((first & row.mask) != row.lead) continue;
    if (text.size() < row.length) return {};
    std::uint32_t code = first & static_cast<unsigned char>(~row.mask);
    for (std::size_t i = 1; i < row.length; ++i) {
      const auto next = static_cast<unsigned char>(text[i]);
      if ((next & 0xc0) != 0x80) return {};
      code = (code << 6) | (next & 0x3f);
    }
    if (code < row.lowest) return {};
    return {code, row.length};
  }
  return {};
}

/// Nearly all text: printable ASCII that stands for itself.
constexpr auto kPlain = [] {
  std::array<bool, 256> plain{};
  for (std::size_t character = 0x20; character < 0x7f; ++character) plain[character] = true;
  for (const char character : {'&', '<', '>', '"'}) plain[static_cast<std::size_t>(character)] = false;
  return plain;
}();

bool isPlain(char character) {
  return kPlain[static_cast<unsigned char>(character)];
}

/// What stands for a character; empty when it stands for itself. Line ends are kept from being made alike.
std::string_view escapeOf(char character) {
  switch (character) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\r':
      return "&#13;";
    case '\n':
      return "&#10;";
    case '\t':
      return "&#9;";
    default:
      return {};
  }
}

}  // namespace

void appendEscaped(std::string& out, std::string_view text) {
  while (!text.empty()) {
    const auto plain = static_cast<std::size_t>(std::ranges::find_if_not(text, isPlain) - text.begin());
    out.append(text.substr(0, plain));
    text.remove_prefix(plain);
    if (text.empty()) return;
    const Character character = decode(text);
    const bool good = character.length > 0 && isXmlCharacter(character.code);
    const std::size_t length = character.length > 0 ? character.length : 1;
    const std::string_view escape = escapeOf(text[0]);
    out.append(!good ? kReplacement : !escape.empty() ? escape : text.substr(0, length));
    text.remove_prefix(length);
  }
}

void appendAttribute(std::string& out, std::string_view name, std::string_view value) {
  out.append(" ").append(name).append("=\"");
  appendEscaped(out, value);
  out += '"';
}

void appendTextValue(std::string& out, std::string_view text) {
  out += "<VALUE>";
  appendEscaped(out, text);
  out += "</VALUE>";
}

void appendMessageStart(std::string& out, std::string_view id, std::string_view protocolVersion) {
  out += "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE";
  appendAttribute(out, "ID", id);
  appendAttribute(out, "PROTOCOLVERSION", protocolVersion);
  out += ">";
}

bool isXmlCharacter(std::uint32_t code) {
  if (code < 0x20) return code == '\t' || code == '\n' || code == '\r';
  return code < 0xd800 || (code >= 0xe000 && code <= 0xfffd) || (code >= 0x10000 && code <= 0x10ffff);
}

bool isXmlText(std::string_view text) {
  while (!text.empty()) {
    const Character character = decode(text);
    if (character.length == 0 || !isXmlCharacter(character.code)) return false;
    text.remove_prefix(character.length);
  }
  return true;
}

}  // namespace ZebManager
