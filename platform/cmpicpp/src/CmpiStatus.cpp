#include "cmpicpp/CmpiStatus.h"

#include <algorithm>
#include <iterator>

namespace CmpiCpp {

std::string CmpiStatus::defaultText(CMPIrc rc) {
  struct Text {
    CMPIrc rc;
    const char* text;
  };
  static constexpr Text kTexts[] = {
      {CMPI_RC_ERR_FAILED, "the operation failed"},
      {CMPI_RC_ERR_ACCESS_DENIED, "access denied"},
      {CMPI_RC_ERR_INVALID_NAMESPACE, "no such namespace"},
      {CMPI_RC_ERR_INVALID_PARAMETER, "invalid parameter"},
      {CMPI_RC_ERR_INVALID_CLASS, "no such class"},
      {CMPI_RC_ERR_NOT_FOUND, "no such instance"},
      {CMPI_RC_ERR_NOT_SUPPORTED, "operation not supported"},
      {CMPI_RC_ERR_NO_SUCH_PROPERTY, "no such property"},
      {CMPI_RC_ERR_TYPE_MISMATCH, "type mismatch"},
      {CMPI_RC_ERR_INVALID_DATA_TYPE, "invalid data type"},
  };
  const auto* found =
      std::find_if(std::begin(kTexts), std::end(kTexts), [&](const Text& t) { return t.rc == rc; });
  return found != std::end(kTexts) ? found->text : "CIM status " + std::to_string(rc);
}

}  // namespace CmpiCpp
