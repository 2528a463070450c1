#include "cimxml/Message.h"

#include <algorithm>
#include <array>

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

}  // namespace ZebManager
