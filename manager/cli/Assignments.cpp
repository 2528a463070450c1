#include "cli/Assignments.h"

#include "values/ObjectPathText.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

std::vector<std::string> splitElements(const std::string& text) {
  std::vector<std::string> elements;
  if (text.empty()) return elements;
  elements.emplace_back();
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == ',') {
      elements.emplace_back();
    } else {
      if (text[i] == '\\' && i + 1 < text.size()) ++i;
      elements.back() += text[i];
    }
  }
  return elements;
}

}  // namespace

Assignment splitAssignment(const std::string& text) {
  const std::size_t equals = text.find('=');
  if (equals == std::string::npos || equals == 0) throw ManagerError("'" + text + "': expected Name=Value");
  return {text.substr(0, equals), text.substr(equals + 1)};
}

CMPIData parseValue(Arena& arena, const ClassRepository& repository, std::string_view nameSpace,
                    const ElementDef& element, const std::string& text) {
  const std::string what = "'" + element.name + "'";
  if (element.type == CMPI_ref) return dataOf(parsePath(arena, repository, nameSpace, text));
  if (!isArray(element.type)) return parseScalar(arena, element.type, text, what);
  const std::vector<std::string> elements = splitElements(text);
  Array* const array = makeArray(arena, static_cast<CMPICount>(elements.size()), elementType(element.type));
  for (std::size_t i = 0; i < elements.size(); ++i) {
    array->body().elements[i] = parseScalar(arena, elementType(element.type), elements[i], what);
  }
  return dataOf(array);
}

}  // namespace ZebManager
