#include "cimxml/AnswerReader.h"

#include "broker/HostName.h"
#include "cimxml/Document.h"
#include "cimxml/ValueReader.h"
#include "values/CallMemory.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

/// What an object manager on this machine wrote is not looked at as closely as what strangers send.
/// The text becomes part of the document.
void load(std::string& text, pugi::xml_document& document) {
  constexpr unsigned kOptions = pugi::parse_default | pugi::parse_ws_pcdata_single;
  if (!document.load_buffer_inplace(text.data(), text.size(), kOptions, pugi::encoding_utf8)) {
    throw ManagerError("the answer is no XML");
  }
}

class AnswerReader {
 public:
  AnswerReader(Reply& reply, const ClassRepository& repository, std::string_view nameSpace)
      : _items(reply.result()->body()), _reader(*_items.keep, repository, nameSpace, hostName()) {}

  /// One element of an IRETURNVALUE.
  void take(pugi::xml_node element) {
    if (isNamed(element, "INSTANCE")) return add(element, nullptr);
    if (isNamed(element, "VALUE.NAMEDINSTANCE") || isNamed(element, "VALUE.OBJECTWITHPATH")) {
      const pugi::xml_node name = firstElement(element);
      return add(nextElement(name), _reader.path(name));
    }
    _items.append(dataOf(_reader.path(element)));
  }

  void takeResults(pugi::xml_node response, const MethodDef& method, const Args& out) {
    for (pugi::xml_node part = firstElement(response); part; part = nextElement(part)) {
      if (isNamed(part, "RETURNVALUE")) {
        _items.append(_reader.value(part, method.type, {"return value of ", method.name}));
        continue;
      }
      const std::string name = part.attribute("NAME").value();
      const ParameterDef* const parameter = method.parameter(name);
      if (!parameter) continue;
      const CMPIData data = _reader.value(part, parameter->type, {"argument ", name});
      out.ft->addArg(&out, parameter->name.c_str(), isNull(data) ? nullptr : &data.value, data.type);
    }
  }

 private:
  void add(pugi::xml_node element, const ObjectPath* path) {
    _items.append(dataOf(_reader.instance(element, path)));
  }

  ListBody& _items;
  const ValueReader _reader;
};

}  // namespace

Reply readAnswer(std::string text, const ClassRepository& repository, std::string_view nameSpace,
                 const MethodDef* method, const Args* out) {
  pugi::xml_document document;
  load(text, document);
  const pugi::xml_node response =
      firstElement(firstElement(firstElement(firstElement(document.root()))));  // CIM, MESSAGE, SIMPLERSP
  if (!isNamed(response, "IMETHODRESPONSE") && !isNamed(response, "METHODRESPONSE")) {
    throw ManagerError("the answer is none to an operation");
  }
  Reply reply;
  if (const pugi::xml_node error = response.child("ERROR")) {
    reply.code = static_cast<CMPIrc>(error.attribute("CODE").as_uint(CMPI_RC_ERR_FAILED));
    reply.message = error.attribute("DESCRIPTION").value();
    return reply;
  }
  const ArenaScope scope(*reply.result()->body().keep);
  AnswerReader reader(reply, repository, nameSpace);
  if (method) {
    reader.takeResults(response, *method, *out);
    return reply;
  }
  const pugi::xml_node returned = response.child("IRETURNVALUE");
  for (pugi::xml_node part = firstElement(returned); part; part = nextElement(part)) reader.take(part);
  return reply;
}

const Instance* readInstanceElement(std::string element, Arena& arena, const ClassRepository& repository,
                                    std::string_view nameSpace) {
  pugi::xml_document document;
  load(element, document);
  const ArenaScope scope(arena);
  return ValueReader(arena, repository, nameSpace, hostName())
      .instance(firstElement(document.root()), nullptr);
}

}  // namespace ZebManager
