#pragma once

#include "cmpicpp/CmpiContext.h"
#include "common/CIMAlertIndication.h"

namespace ZEB {

/// Entry of a context that holds the address at which a client reached the server; object managers that do
/// not know it leave it out.
inline constexpr char kNetworkAddressEntry[] = "NetworkIPAddress";

/// An alert of this family of providers: what a standard alert has, and what its hardware and category are.
class QVAlertIndication : public CIMAlertIndication {
 public:
  using CIMAlertIndication::CIMAlertIndication;

  void setSummary(const std::string& summary);
  void setEventCategory(int category);
  void setOtherEventCategory(const std::string& category);
  /// Sets nothing when the context has no `kNetworkAddressEntry`.
  void setNetworkIPAddress(const CmpiCpp::CmpiContext& context);
  void setEventSubCategory(int subCategory);
  void setHWPhysicalLocation(const std::string& location);
  void setHWEncodingPhysicalLocation(const std::string& location);
  void setHWPartNumber(const std::string& partNumber);
  void setUserComment(const std::string& comment);
};

}  // namespace ZEB
