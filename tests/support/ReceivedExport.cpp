#include "support/ReceivedExport.h"

#include <pugixml.hpp>
#include <stdexcept>
#include <string_view>

namespace ZebManager {
namespace {

/// The only element in `parent`, which has to have this name.
pugi::xml_node only(const pugi::xml_node& parent, const char* name) {
  const pugi::xml_node child = parent.first_child();
  if (std::string_view(child.name()) != name || child.next_sibling())
    throw std::runtime_error(std::string("not one ") + name + " in " + parent.name());
  return child;
}

std::string valueOf(const pugi::xml_node& property) {
  if (property.name() == std::string_view("PROPERTY")) return property.child("VALUE").text().get();
  std::string values;
  for (const pugi::xml_node& value : property.child("VALUE.ARRAY").children("VALUE"))
    values += std::string(values.empty() ? "" : "\n") + value.text().get();
  return values;
}

}  // namespace

std::string ReceivedExport::operator[](const std::string& property) const {
  const auto found = properties.find(property);
  return found == properties.end() ? "" : found->second;
}

ReceivedExport readExport(const std::string& body) {
  pugi::xml_document document;
  if (const auto read = document.load_buffer(body.data(), body.size()); !read)
    throw std::runtime_error(read.description());
  pugi::xml_node node = document;
  for (const char* name : {"CIM", "MESSAGE", "SIMPLEEXPREQ", "EXPMETHODCALL", "EXPPARAMVALUE", "INSTANCE"}) {
    node = only(node, name);
  }
  ReceivedExport received{node.attribute("CLASSNAME").value(), {}};
  for (const pugi::xml_node& property : node.children()) {
    if (!received.properties.emplace(property.attribute("NAME").value(), valueOf(property)).second)
      throw std::runtime_error(std::string("twice: ") + property.attribute("NAME").value());
  }
  return received;
}

}  // namespace ZebManager
