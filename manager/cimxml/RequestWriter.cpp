#include "cimxml/RequestWriter.h"

#include "cimxml/ValueWriter.h"
#include "cimxml/XmlText.h"

namespace ZebManager {
namespace {

constexpr char kId[] = "1";

std::string nameAttribute(std::string_view text) {
  std::string out;
  appendAttribute(out, "NAME", text);
  return out;
}

}  // namespace

RequestWriter::RequestWriter(std::string_view operation, std::string_view nameSpace) {
  appendMessageStart(_text, kId, "1.0");
  _text += "<SIMPLEREQ><IMETHODCALL" + nameAttribute(operation) + ">";
  appendLocalNameSpace(_text, nameSpace);
}

RequestWriter& RequestWriter::parameter(std::string_view name, std::string_view content) {
  _text.append("<IPARAMVALUE" + nameAttribute(name) + ">").append(content).append("</IPARAMVALUE>");
  return *this;
}

RequestWriter& RequestWriter::className(std::string_view parameterName, std::string_view name) {
  return name.empty() ? *this : parameter(parameterName, "<CLASSNAME" + nameAttribute(name) + "/>");
}

RequestWriter& RequestWriter::text(std::string_view parameterName, std::string_view value) {
  if (value.empty()) return *this;
  std::string content = "<VALUE>";
  appendEscaped(content, value);
  return parameter(parameterName, content + "</VALUE>");
}

RequestWriter& RequestWriter::path(std::string_view parameterName, const PathBody& path) {
  std::string content;
  appendInstanceName(content, path);
  return parameter(parameterName, content);
}

RequestWriter& RequestWriter::instance(std::string_view parameterName, const InstanceBody& instance) {
  std::string content;
  appendInstance(content, instance);
  return parameter(parameterName, content);
}

RequestWriter& RequestWriter::namedInstance(std::string_view parameterName, const InstanceBody& instance) {
  std::string content = "<VALUE.NAMEDINSTANCE>";
  appendInstanceName(content, *instance.path);
  appendInstance(content, instance);
  return parameter(parameterName, content + "</VALUE.NAMEDINSTANCE>");
}

RequestWriter& RequestWriter::names(std::string_view parameterName, PropertyList names) {
  if (!names) return *this;
  std::string content = "<VALUE.ARRAY>";
  for (; *names; ++names) {
    content += "<VALUE>";
    appendEscaped(content, *names);
    content += "</VALUE>";
  }
  return parameter(parameterName, content + "</VALUE.ARRAY>");
}

std::string RequestWriter::finish() {
  return _text + "</IMETHODCALL></SIMPLEREQ></MESSAGE></CIM>\n";
}

std::string methodRequest(const PathBody& path, std::string_view method, const NamedValues& arguments) {
  std::string out;
  appendMessageStart(out, kId, "1.0");
  const std::string_view target = path.keys.count == 0 ? "LOCALCLASSPATH" : "LOCALINSTANCEPATH";
  out.append("<SIMPLEREQ><METHODCALL" + nameAttribute(method) + "><").append(target).append(">");
  appendLocalNameSpace(out, path.nameSpace);
  if (path.keys.count == 0) {
    out += "<CLASSNAME" + nameAttribute(path.className) + "/>";
  } else {
    appendInstanceName(out, path);
  }
  out.append("</").append(target).append(">");
  for (const NamedValue& argument : arguments)
    appendParameter(out, "PARAMVALUE", argument.name, argument.data);
  return out + "</METHODCALL></SIMPLEREQ></MESSAGE></CIM>\n";
}

}  // namespace ZebManager
