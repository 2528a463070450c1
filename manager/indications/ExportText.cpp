#include "indications/ExportText.h"

#include <algorithm>
#include <pugixml.hpp>
#include <sstream>
#include <vector>

#include "schema/Caseless.h"
#include "values/ManagerError.h"

namespace ZebManager {
namespace {

// Values that are blank stay.
constexpr unsigned kReading = pugi::parse_escapes | pugi::parse_cdata | pugi::parse_ws_pcdata;
constexpr unsigned kWriting = pugi::format_raw | pugi::format_no_declaration;
constexpr char kContext[] = "SequenceContext";
constexpr char kNumber[] = "SequenceNumber";

void addProperty(pugi::xml_node instance, const char* name, const char* type, const std::string& value) {
  pugi::xml_node property = instance.append_child("PROPERTY");
  property.append_attribute("NAME") = name;
  property.append_attribute("TYPE") = type;
  property.append_child("VALUE").text() = value.c_str();
}

/// All elements of an instance that are called PROPERTY, PROPERTY.ARRAY or PROPERTY.REFERENCE.
template <class Unwanted>
void removeProperties(pugi::xml_node instance, const Unwanted& unwanted) {
  std::vector<pugi::xml_node> removed;
  for (const pugi::xml_node child : instance.children()) {
    const bool property = std::string_view(child.name()).starts_with("PROPERTY");
    if (property && unwanted(std::string_view(child.attribute("NAME").value()))) removed.push_back(child);
  }
  for (const pugi::xml_node& child : removed) instance.remove_child(child);
}

template <class Change>
std::optional<std::string> changed(std::string_view instanceElement, const Change& change) {
  pugi::xml_document document;
  const auto result =
      document.load_buffer(instanceElement.data(), instanceElement.size(), kReading, pugi::encoding_utf8);
  const pugi::xml_node instance = document.child("INSTANCE");
  if (!result || !instance) return std::nullopt;
  change(instance);
  std::ostringstream out;
  instance.print(out, "", kWriting, pugi::encoding_utf8);
  return out.str();
}

}  // namespace

std::optional<std::string> withSequence(std::string_view instanceElement, std::string_view context,
                                        std::int64_t number) {
  return changed(instanceElement, [&](pugi::xml_node instance) {
    removeProperties(
        instance, [](std::string_view name) { return sameName(name, kContext) || sameName(name, kNumber); });
    addProperty(instance, kContext, "string", std::string(context));
    addProperty(instance, kNumber, "sint64", std::to_string(number));
  });
}

std::optional<std::string> withProperties(std::string_view instanceElement,
                                          const std::vector<std::string>& names) {
  return changed(instanceElement, [&](pugi::xml_node instance) {
    removeProperties(instance, [&](std::string_view name) {
      return std::ranges::none_of(names, [&](const std::string& wanted) { return sameName(wanted, name); });
    });
  });
}

ExportAnswer readExportAnswer(std::string_view body) {
  using Kind = ExportAnswer::Kind;
  if (body.find_first_not_of(" \t\r\n") == std::string_view::npos) return {Kind::Acknowledged};
  pugi::xml_document document;
  const auto result =
      document.load_buffer(body.data(), body.size(), pugi::parse_default, pugi::encoding_utf8);
  if (!result) return {Kind::Unreadable, std::string("its answer cannot be read: ") + result.description()};
  const pugi::xml_node message = document.child("CIM").child("MESSAGE");
  pugi::xml_node answer = message.child("SIMPLEEXPRSP").child("EXPMETHODRESPONSE");
  if (!answer) answer = message.child("MULTIEXPRSP").child("SIMPLEEXPRSP").child("EXPMETHODRESPONSE");
  if (!answer) return {Kind::Unreadable, "its answer is no export response"};
  const pugi::xml_node error = answer.child("ERROR");
  if (!error) return {Kind::Acknowledged};
  return {Kind::Refused, oneLine(std::string("CIM error ") + error.attribute("CODE").value() + " " +
                                 error.attribute("DESCRIPTION").value())};
}

}  // namespace ZebManager
