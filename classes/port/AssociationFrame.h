#pragma once

#include <string>
#include <vector>

#include "cmpicpp/CmpiInstance.h"
#include "common/CmpiManagedInstanceAssociation.h"
#include "common/Logger.h"

namespace ZEB {

/// What one association class differs in from the others.
struct AssociationClass {
  enum class KeyOrder { FirstRoleFirst, SecondRoleFirst };

  CmpiCpp::NameLiteral name;
  CmpiManagedInstanceAssociation::Roles roles;
  std::vector<CmpiCpp::CmpiInstance::Property> extras = {};  ///< added after the two references
  KeyOrder keyOrder = KeyOrder::FirstRoleFirst;  ///< of the path; properties are in role order always
};

/// The frame of every association: a reference key and a reference property for each role, then the extras.
class AssociationFrame : public CmpiManagedInstanceAssociation {
 public:
  ~AssociationFrame() override;
  AssociationFrame(const AssociationFrame&) = delete;
  AssociationFrame& operator=(const AssociationFrame&) = delete;

  CmpiCpp::CmpiObjectPath makeObjectPath() override;
  std::size_t pathHash() override;
  CmpiCpp::CmpiInstance makeInstance() override;
  CmpiCpp::CmpiName className() const override { return _class.name; }
  Roles roles() const override { return _class.roles; }

 protected:
  /// `associationClass` has to outlive the object.
  AssociationFrame(const Logger& logger, const std::string& nameSpace,
                   const AssociationClass& associationClass, const CmpiCpp::CmpiObjectPath& firstEnd,
                   const CmpiCpp::CmpiObjectPath& secondEnd);

  const Logger& logger() const { return _logger; }

 private:
  const AssociationClass& _class;
  std::string _nameSpace;
  Logger _logger;
};

/// A plain association: the frame, and a table `kClass` that `Class` has in a source of its own.
template <class Class>
class PlainAssociation : public AssociationFrame {
 public:
  PlainAssociation(const Logger& logger, const std::string& nameSpace,
                   const CmpiCpp::CmpiObjectPath& firstEnd, const CmpiCpp::CmpiObjectPath& secondEnd)
      : AssociationFrame(logger, nameSpace, Class::kClass, firstEnd, secondEnd) {}
};

}  // namespace ZEB
