#include "cimxml/Parameters.h"

#include <algorithm>

#include "cimxml/Document.h"

namespace ZebManager {
namespace {

[[noreturn]] void invalid(std::string_view name, const std::string& why) {
  throw CimError(CMPI_RC_ERR_INVALID_PARAMETER, "parameter '" + std::string(name) + "' " + why);
}

std::string folded(std::string_view name) {
  std::string out(name);
  std::transform(out.begin(), out.end(), out.begin(), foldCase);
  return out;
}

}  // namespace

NameList::NameList(std::vector<std::string> names) : _names(std::move(names)) {
  for (const std::string& name : _names) _pointers.push_back(name.c_str());
  _pointers.push_back(nullptr);
}

Parameters::Parameters(pugi::xml_node call) {
  for (const pugi::xml_node value : call.children("IPARAMVALUE")) {
    const char* const name = value.attribute("NAME").value();
    if (!_values.emplace(folded(name), value).second) invalid(name, "is given twice");
  }
}

void Parameters::allowOnly(std::string_view names) const {
  const std::string known = " " + folded(names) + " ";
  for (const auto& [name, value] : _values) {
    if (known.find(" " + name + " ") == std::string::npos)
      invalid(value.attribute("NAME").value(), "is unknown");
  }
}

pugi::xml_node Parameters::holder(std::string_view name) const {
  const auto found = _values.find(folded(name));
  return found == _values.end() ? pugi::xml_node() : found->second;
}

pugi::xml_node Parameters::element(std::string_view name) const {
  return firstElement(holder(name));
}

pugi::xml_node Parameters::required(std::string_view name) const {
  const pugi::xml_node found = element(name);
  if (!found) invalid(name, "is missing");
  return found;
}

bool Parameters::flag(std::string_view name, bool otherwise) const {
  const pugi::xml_node value = element(name);
  if (!value) return otherwise;
  const std::string content = contentOf(value);
  if (!sameName(content, "true") && !sameName(content, "false")) invalid(name, "has to be TRUE or FALSE");
  return sameName(content, "true");
}

std::string Parameters::text(std::string_view name) const {
  const pugi::xml_node value = element(name);
  if (value && !isNamed(value, "VALUE")) invalid(name, "has to be a single value");
  return contentOf(value);
}

std::optional<std::uint32_t> Parameters::number(std::string_view name) const {
  if (!element(name)) return std::nullopt;
  const auto read = parseInteger(text(name));
  if (!read || !fits(*read, *integerRange(CMPI_uint32))) invalid(name, "has to be a number of 32 bits");
  return static_cast<std::uint32_t>(read->magnitude);
}

std::string Parameters::className(std::string_view name) const {
  const pugi::xml_node value = element(name);
  if (!value) return {};
  if (!isNamed(value, "CLASSNAME") || !*value.attribute("NAME").value()) {
    invalid(name, "has to be the name of a class");
  }
  return value.attribute("NAME").value();
}

std::optional<std::vector<std::string>> Parameters::names(std::string_view name) const {
  const pugi::xml_node value = element(name);
  if (!value) return std::nullopt;
  if (!isNamed(value, "VALUE.ARRAY")) invalid(name, "has to be an array");
  std::vector<std::string> list;
  for (const pugi::xml_node item : value.children("VALUE")) list.push_back(contentOf(item));
  return list;
}

}  // namespace ZebManager
