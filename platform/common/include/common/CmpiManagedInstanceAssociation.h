#pragma once

#include "common/CmpiManagedInstance.h"

namespace ZEB {

/// An association between two objects, which it knows by their paths alone.
class CmpiManagedInstanceAssociation : public CmpiManagedInstance {
 public:
  struct Roles {
    CmpiCpp::NameLiteral first;
    CmpiCpp::NameLiteral second;
  };

  CmpiManagedInstanceAssociation(CmpiCpp::CmpiObjectPath firstEnd, CmpiCpp::CmpiObjectPath secondEnd)
      : _firstEnd(std::move(firstEnd)), _secondEnd(std::move(secondEnd)) {}

  const CmpiManagedInstanceAssociation* association() const override { return this; }
  virtual Roles roles() const = 0;
  const CmpiCpp::CmpiObjectPath& firstEnd() const { return _firstEnd; }
  const CmpiCpp::CmpiObjectPath& secondEnd() const { return _secondEnd; }

  /// The first end for the second and the second for the first, in this order of looking; an empty path for
  /// one that is neither.
  virtual CmpiCpp::CmpiObjectPath otherEnd(const CmpiCpp::CmpiObjectPath& path) const;

 private:
  CmpiCpp::CmpiObjectPath _firstEnd;
  CmpiCpp::CmpiObjectPath _secondEnd;
};

}  // namespace ZEB
