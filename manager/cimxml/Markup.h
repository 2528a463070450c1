// What the XML library lets pass though it is no XML.
#pragma once

#include <stdexcept>
#include <string_view>

namespace ZebManager {

class MarkupError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Looks at references (to the five entities of XML itself and to characters that XML allows; there are no
/// others without declarations) and at declarations in a document type, which are not read. Throws
/// MarkupError. Elements are not held against each other here.
void checkMarkup(std::string_view body);

}  // namespace ZebManager
