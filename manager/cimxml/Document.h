// A body as XML.
#pragma once

#include <pugixml.hpp>
#include <string>
#include <string_view>

#include "cimxml/Message.h"

namespace ZebManager {

/// Reads a body that is UTF-8 XML and no more nested than `deepest`. Entities of a document type are neither
/// read nor expanded: a body that declares any is refused. Throws MessageError.
void readDocument(std::string_view body, unsigned deepest, pugi::xml_document& document);

/// An element's child elements, whatever stands between them.
pugi::xml_node firstElement(pugi::xml_node parent);
pugi::xml_node nextElement(pugi::xml_node element);
bool isNamed(pugi::xml_node element, std::string_view name);
/// All the text of an element.
std::string contentOf(pugi::xml_node element);

/// The IMETHODCALL or METHODCALL of a request that is one. Throws MessageError.
pugi::xml_node callOf(const pugi::xml_document& document);
/// What the call that a request holds says of it.
CimMessage messageOf(pugi::xml_node call);
/// Name parts of a LOCALNAMESPACEPATH (or what holds one), with single slashes; empty without any.
std::string nameSpaceOf(pugi::xml_node holder);

}  // namespace ZebManager
