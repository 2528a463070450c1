#pragma once

#include "cmpicpp/CmpiObjectPath.h"
#include "cmpicpp/CmpiProvider.h"

namespace CmpiCpp {

/// A provider of indications; see `CmpiInstanceProvider` for threads and errors. Filters are handed over by
/// class path alone: what a filter selects is the object manager's affair.
class CmpiIndicationProvider : public virtual CmpiProvider {
 public:
  virtual void authorizeFilter(const CmpiContext& context, const char* eventType,
                               const CmpiObjectPath& classPath, const char* owner);
  virtual void mustPoll(const CmpiContext& context, const char* eventType, const CmpiObjectPath& classPath);
  /// Answers `first`, unchanged.
  virtual bool activateFilter(const CmpiContext& context, const char* eventType,
                              const CmpiObjectPath& classPath, bool first);
  /// Answers `last`, unchanged.
  virtual bool deActivateFilter(const CmpiContext& context, const char* eventType,
                                const CmpiObjectPath& classPath, bool last);
  virtual void enableIndications(const CmpiContext& context);
  virtual void disableIndications(const CmpiContext& context);

  CMPIIndicationMI* getIndicationMI() const;
};

}  // namespace CmpiCpp
