#include "cimxml/Answer.h"

#include "cimxml/Document.h"
#include "cimxml/MethodCall.h"
#include "cimxml/Operations.h"
#include "cimxml/XmlText.h"
#include "values/CallMemory.h"

namespace ZebManager {
namespace {

void performIntrinsic(const CimMessage& message, pugi::xml_node call, Namespace& target,
                      const ValueReader& reader, std::string& out) {
  const OperationRow* const operation = findOperation(message.operation);
  if (!operation) {
    throw CimError(CMPI_RC_ERR_NOT_SUPPORTED, "'" + message.operation + "' is not supported");
  }
  const Parameters parameters(call);
  parameters.allowOnly(operation->parameters);
  out = "<IRETURNVALUE>";
  if (operation->perform({target, parameters, reader, message.nameSpace}, out)) {
    out.append("</IRETURNVALUE>");
  } else {
    out.clear();
  }
}

/// Codes that only programs on this side of the protocol know are failures to a client.
int cimCode(CMPIrc code) {
  constexpr int kHighest = 29;
  return code < CMPI_RC_ERR_FAILED || code > kHighest ? CMPI_RC_ERR_FAILED : code;
}

}  // namespace

std::string contentAnswer(const CimMessage& message, std::string_view content) {
  const std::string_view element = message.intrinsic ? "IMETHODRESPONSE" : "METHODRESPONSE";
  std::string out;
  out.reserve(content.size() + 512);
  appendMessageStart(out, message.id, message.protocolVersion);
  out.append("<SIMPLERSP><").append(element);
  appendAttribute(out, "NAME", message.operation);
  out.append(">").append(content).append("</").append(element).append("></SIMPLERSP></MESSAGE></CIM>\n");
  return out;
}

std::string_view descriptionOf(const CimError& error) {
  const std::string_view text = error.what();
  return text.substr(0, text.rfind(" (CMPI code "));
}

std::string answer(std::string_view body, Namespace& target) {
  pugi::xml_document document;
  readDocument(body, kDeepestOfAll, document);
  const pugi::xml_node call = callOf(document);
  const CimMessage message = messageOf(call);
  Arena arena;
  const ArenaScope scope(arena);
  const ValueReader reader(arena, target.repository(), message.nameSpace);
  std::string content;
  try {
    if (message.intrinsic) {
      performIntrinsic(message, call, target, reader, content);
    } else {
      performMethod(call, target, reader, message.nameSpace, content);
    }
  } catch (const CimError& error) {
    return errorAnswer(message, error.code, descriptionOf(error));
  }
  return contentAnswer(message, content);
}

std::string errorAnswer(const CimMessage& message, CMPIrc code, std::string_view description) {
  std::string error = "<ERROR";
  appendAttribute(error, "CODE", std::to_string(cimCode(code)));
  appendAttribute(error, "DESCRIPTION", description);
  return contentAnswer(message, error + "/>");
}

}  // namespace ZebManager
