#include "cimxml/Export.h"

#include "cimxml/ValueWriter.h"
#include "cimxml/XmlText.h"

namespace ZebManager {

std::string instanceElement(const Instance& instance) {
  std::string out;
  appendInstance(out, instance.body());
  return out;
}

std::string exportMessage(std::string_view id, std::string_view instanceElement) {
  std::string out;
  appendMessageStart(out, id, "1.0");
  out +=
      "<SIMPLEEXPREQ><EXPMETHODCALL NAME=\"ExportIndication\">"
      "<EXPPARAMVALUE NAME=\"NewIndication\">";
  out.append(instanceElement);
  return out + "</EXPPARAMVALUE></EXPMETHODCALL></SIMPLEEXPREQ></MESSAGE></CIM>\n";
}

}  // namespace ZebManager
