#include "cimxml/Message.h"

#include <algorithm>
#include <array>
#include <sstream>

#include "cimxml/Document.h"
#include "schema/Caseless.h"

namespace ZebManager {
namespace {

constexpr std::array<std::string_view, 9> kWriting = {"CreateInstance", "ModifyInstance", "DeleteInstance",
                                                      "SetProperty",    "CreateClass",    "ModifyClass",
                                                      "DeleteClass",    "SetQualifier",   "DeleteQualifier"};

/// In whatever case the operation is written: it is found in any.
bool writesAnything(std::string_view operation) {
  return std::any_of(kWriting.begin(), kWriting.end(),
                     [&](std::string_view name) { return sameName(name, operation); });
}

}  // namespace

CimMessage messageOf(pugi::xml_node call) {
  const pugi::xml_node envelope = call.parent().parent();
  CimMessage message;
  message.id = envelope.attribute("ID").value();
  message.protocolVersion = envelope.attribute("PROTOCOLVERSION").value();
  message.operation = call.attribute("NAME").value();
  message.intrinsic = isNamed(call, "IMETHODCALL");
  const pugi::xml_node target = firstElement(call);
  message.nameSpace = isNamed(target, "LOCALNAMESPACEPATH") ? nameSpaceOf(call) : nameSpaceOf(target);
  message.writes = !message.intrinsic || writesAnything(message.operation);
  return message;
}

CimMessage readMessage(std::string_view body, unsigned deepest) {
  pugi::xml_document document;
  readDocument(body, deepest, document);
  return messageOf(callOf(document));
}

std::string withNameSpace(std::string_view body, std::string_view from, std::string_view to) {
  pugi::xml_document document;
  readDocument(body, kDeepestOfAll, document);
  for (const pugi::xpath_node& found : document.select_nodes("//LOCALNAMESPACEPATH")) {
    pugi::xml_node path = found.node();
    if (!sameName(nameSpaceOf(path), from)) continue;
    path.remove_children();
    for (std::string_view rest = to; !rest.empty();) {
      const std::size_t slash = std::min(rest.find('/'), rest.size());
      path.append_child("NAMESPACE").append_attribute("NAME") = std::string(rest.substr(0, slash)).c_str();
      rest.remove_prefix(std::min(slash + 1, rest.size()));
    }
  }
  std::ostringstream out;
  document.save(out, "", pugi::format_raw | pugi::format_no_declaration, pugi::encoding_utf8);
  return out.str();
}

}  // namespace ZebManager
