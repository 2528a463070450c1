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
  const std::size_t before = out.size();
  out.append("<IRETURNVALUE>");
  if (operation->perform({target, parameters, reader, message.nameSpace}, out)) {
    out.append("</IRETURNVALUE>");
  } else {
    out.resize(before);
  }
}

std::string_view elementOf(const CimMessage& message) {
  return message.intrinsic ? "IMETHODRESPONSE" : "METHODRESPONSE";
}

void appendStart(std::string& out, const CimMessage& message) {
  appendMessageStart(out, message.id, message.protocolVersion);
  out.append("<SIMPLERSP><").append(elementOf(message));
  appendAttribute(out, "NAME", message.operation);
  out.append(">");
}

void appendEnd(std::string& out, const CimMessage& message) {
  out.append("</").append(elementOf(message)).append("></SIMPLERSP></MESSAGE></CIM>\n");
}

/// Codes that only programs on this side of the protocol know are failures to a client.
int cimCode(CMPIrc code) {
  constexpr int kHighest = 29;
  return code < CMPI_RC_ERR_FAILED || code > kHighest ? CMPI_RC_ERR_FAILED : code;
}

}  // namespace

std::string contentAnswer(const CimMessage& message, std::string_view content) {
  std::string out;
  out.reserve(content.size() + 512);
  appendStart(out, message);
  out.append(content);
  appendEnd(out, message);
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
  std::string out;
  appendStart(out, message);
  try {
    if (message.intrinsic) {
      performIntrinsic(message, call, target, reader, out);
    } else {
      performMethod(call, target, reader, message.nameSpace, out);
    }
  } catch (const CimError& error) {
    return errorAnswer(message, error.code, descriptionOf(error));
  }
  appendEnd(out, message);
  return out;
}

std::string errorAnswer(const CimMessage& message, CMPIrc code, std::string_view description) {
  std::string error = "<ERROR";
  appendAttribute(error, "CODE", std::to_string(cimCode(code)));
  appendAttribute(error, "DESCRIPTION", description);
  return contentAnswer(message, error + "/>");
}

}  // namespace ZebManager
