// Text in XML.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

namespace ZebManager {

/// Appends text as it may stand in content and in quoted attributes. What is no UTF-8, or no character of
/// XML, becomes the replacement character: better than a document that nobody can read.
void appendEscaped(std::string& out, std::string_view text);

/// Appends ` name="value"`.
void appendAttribute(std::string& out, std::string_view name, std::string_view value);

/// Appends a VALUE of a text.
void appendTextValue(std::string& out, std::string_view text);

/// Appends what a message begins with, up to and with its MESSAGE.
void appendMessageStart(std::string& out, std::string_view id, std::string_view protocolVersion);

/// Whether XML allows a character.
bool isXmlCharacter(std::uint32_t code);

/// Whether text is UTF-8 and holds nothing but characters of XML.
bool isXmlText(std::string_view text);

}  // namespace ZebManager
