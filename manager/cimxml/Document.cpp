#include "cimxml/Document.h"

#include <algorithm>

#include "cimxml/Markup.h"
#include "cimxml/Message.h"
#include "cimxml/XmlText.h"
#include "schema/Caseless.h"

namespace ZebManager {
namespace {

/// More than any request needs: an element or an attribute costs many times the memory of its text.
constexpr std::ptrdiff_t kMostParts = 100'000;

[[noreturn]] void notWellFormed(const std::string& why) {
  throw MessageError(400, "request-not-well-formed", why);
}

[[noreturn]] void notValid(const std::string& why) {
  throw MessageError(400, "request-not-valid", why);
}

void checkPreamble(const pugi::xml_document& document) {
  for (const pugi::xml_node node : document.children()) {
    if (node.type() == pugi::node_declaration) {
      const std::string_view encoding = node.attribute("encoding").as_string("utf-8");
      if (!sameName(encoding, "utf-8") && !sameName(encoding, "us-ascii")) {
        notWellFormed("the encoding is not UTF-8");
      }
    }
  }
}

void checkDepth(const pugi::xml_document& document, unsigned deepest) {
  unsigned depth = 0;
  for (pugi::xml_node node = document.first_child(); node;) {
    if (node.first_child()) {
      if (++depth > deepest) notValid("elements stand too deep in each other");
      node = node.first_child();
      continue;
    }
    while (node && !node.next_sibling()) {
      node = node.parent();
      if (node.type() == pugi::node_document) return;
      --depth;
    }
    node = node.next_sibling();
  }
}

struct VersionRow {
  const char* attribute;
  std::string_view major;
  const char* error;
};

void checkVersion(pugi::xml_node element, const VersionRow& row) {
  const std::string_view version = element.attribute(row.attribute).value();
  if (version.empty()) notValid(std::string(element.name()) + " lacks " + row.attribute);
  if (!version.starts_with(row.major)) {
    throw MessageError(501, row.error, std::string(row.attribute) + " is not supported");
  }
}

}  // namespace

void readDocument(std::string_view body, unsigned deepest, pugi::xml_document& document) {
  if (body.starts_with("\xef\xbb\xbf")) body.remove_prefix(3);
  if (!isXmlText(body)) notWellFormed("the body is no UTF-8 text");
  if (std::count(body.begin(), body.end(), '<') > kMostParts ||
      std::count(body.begin(), body.end(), '=') > kMostParts) {
    throw MessageError(413, "", "the request has too many elements or attributes");
  }
  constexpr unsigned kOptions = pugi::parse_default | pugi::parse_ws_pcdata_single | pugi::parse_declaration;
  try {
    checkMarkup(body);
  } catch (const MarkupError& error) {
    notWellFormed(error.what());
  }
  const auto result = document.load_buffer(body.data(), body.size(), kOptions, pugi::encoding_utf8);
  if (!result) notWellFormed(result.description());
  checkPreamble(document);
  checkDepth(document, deepest);
}

bool isNamed(pugi::xml_node element, std::string_view name) {
  return name == element.name();
}

pugi::xml_node firstElement(pugi::xml_node parent) {
  const pugi::xml_node first = parent.first_child();
  return !first || first.type() == pugi::node_element ? first : nextElement(first);
}

pugi::xml_node nextElement(pugi::xml_node element) {
  do {
    element = element.next_sibling();
  } while (element && element.type() != pugi::node_element);
  return element;
}

std::string contentOf(pugi::xml_node element) {
  std::string text;
  for (const pugi::xml_node part : element.children()) {
    if (part.type() == pugi::node_pcdata || part.type() == pugi::node_cdata) text += part.value();
  }
  return text;
}

pugi::xml_node callOf(const pugi::xml_document& document) {
  const pugi::xml_node cim = firstElement(document.root());
  if (!isNamed(cim, "CIM")) notValid("the document is no CIM element");
  checkVersion(cim, {"CIMVERSION", "2.", "unsupported-cim-version"});
  checkVersion(cim, {"DTDVERSION", "2.", "unsupported-dtd-version"});
  const pugi::xml_node message = firstElement(cim);
  if (!isNamed(message, "MESSAGE")) notValid("a MESSAGE is expected");
  if (!message.attribute("ID")) notValid("MESSAGE lacks ID");
  checkVersion(message, {"PROTOCOLVERSION", "1.", "unsupported-protocol-version"});
  const pugi::xml_node request = firstElement(message);
  if (isNamed(request, "MULTIREQ")) {
    throw MessageError(501, "multiple-requests-unsupported", "one request at a time");
  }
  if (isNamed(request, "SIMPLEEXPREQ") || isNamed(request, "MULTIEXPREQ")) {
    throw MessageError(501, "unsupported-operation", "exports are not taken");
  }
  if (!isNamed(request, "SIMPLEREQ")) notValid("a SIMPLEREQ is expected");
  const pugi::xml_node call = firstElement(request);
  if (!isNamed(call, "IMETHODCALL") && !isNamed(call, "METHODCALL")) notValid("a method call is expected");
  if (!*call.attribute("NAME").value()) notValid("the method call lacks NAME");
  if (nextElement(call) || nextElement(request) || nextElement(message)) notValid("more than one request");
  return call;
}

std::string nameSpaceOf(pugi::xml_node holder) {
  if (const pugi::xml_node outer = holder.child("NAMESPACEPATH")) holder = outer;
  const pugi::xml_node inner = holder.child("LOCALNAMESPACEPATH");
  std::string joined;
  for (const pugi::xml_node part : (inner ? inner : holder).children("NAMESPACE")) {
    joined.append(joined.empty() ? "" : "/").append(part.attribute("NAME").value());
  }
  return joined;
}

}  // namespace ZebManager
