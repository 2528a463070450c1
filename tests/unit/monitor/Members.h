#pragma once

#include "classes/port/CollectionMember.h"
#include "classes/port/ManagedObject.h"

namespace ZEB::test {

/// A port or a team as the collection sees one, with a status that the test sets.
class Member : public ManagedObject, public CollectionMember {
 public:
  Member(const Logger& logger, Kind kind, const std::string& name, operationalStatus status)
      : ManagedObject(logger, "root/jxv", classOf(kind), {{"Name", name}}),
        CollectionMember(kind, ManagedObject::makeObjectPath().str()),
        _status(status) {
    setWatchesStatus(true);
  }

  CmpiCpp::CmpiInstance makeInstance() override { return CmpiCpp::CmpiInstance(makeObjectPath()); }
  operationalStatus lastStatus() override { return _status; }

 private:
  static CmpiCpp::NameLiteral classOf(Kind kind) {
    if (kind == Kind::Port) return "ZEB_EthernetPort";
    return "ZEB_EthernetTeam";
  }

  operationalStatus _status;
};

/// An instance that is no member.
class Bystander : public ManagedObject {
 public:
  explicit Bystander(const Logger& logger)
      : ManagedObject(logger, "root/jxv", "ZEB_EthernetDevice", {{"Name", "bystander"}}) {}
  CmpiCpp::CmpiInstance makeInstance() override { return CmpiCpp::CmpiInstance(makeObjectPath()); }
};

}  // namespace ZEB::test
