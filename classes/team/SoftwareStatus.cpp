#include "classes/team/SoftwareStatus.h"

namespace ZEB {

CmpiCpp::CmpiInstance::Property softwareStatus() {
  constexpr std::uint16_t kStatus[] = {2, 6};  // current, installed
  CmpiCpp::CmpiArray status(std::size(kStatus), CMPI_uint16);
  for (std::size_t i = 0; i < std::size(kStatus); ++i) status.setElementAt(i, kStatus[i]);
  return {"ElementSoftwareStatus", status};
}

}  // namespace ZEB
