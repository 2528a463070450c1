#pragma once

#include <algorithm>
#include <concepts>
#include <functional>
#include <initializer_list>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "classes/port/Known.h"
#include "classes/port/PropertyColumns.h"
#include "cmpicpp/CmpiFactories.h"
#include "cmpicpp/CmpiInstance.h"
#include "common/OperationalStatus.h"
#include "common/ZEBUtil.h"

namespace ZEB {

// A CIM class's properties as a table that reads like its description: name, CIM type, where the value comes
// from, and what stands in when it is not known. The last column has no default: a row that does not decide
// does not compile.
//
//   string("Caption", &EthernetPort::getPortPciProductStr, orElse("Ethernet Port")),
//   boolean("FullDuplex", &EthernetPort::getFullDuplex, orOmit),
//   uint16("RequestedState", constant(12)),
//
// A value comes from a getter of the subject's record (0 is success), from a function of the subject that
// returns a std::optional (may fail) or a plain value (cannot fail, and says `always`), from a `constant`, or
// from a property already in the instance (`sameAs`). An empty list is one that is not known.

/// Rows of a table, one or several.
template <class Subject>
class PropertyRows {
 public:
  /// The value, from the subject and what the instance has so far; nothing leaves the property out.
  using Read = std::function<std::optional<CmpiCpp::CmpiData>(Subject&, const CmpiCpp::CmpiInstance&)>;

  struct Row {
    std::optional<CmpiCpp::NameLiteral> name;  ///< none for a step that adds no property
    CMPIType type;
    Read read;
    bool readsOthers = false;  ///< which it takes from the instance
  };

  PropertyRows(std::initializer_list<PropertyRows> parts) {
    for (const PropertyRows& part : parts) _rows.insert(_rows.end(), part._rows.begin(), part._rows.end());
    for (auto row = _rows.begin(); row != _rows.end(); ++row) {
      _distinct = _distinct && std::none_of(_rows.begin(), row, [&](const Row& other) {
                    return row->name && other.name && CmpiCpp::CmpiName(*row->name) == *other.name;
                  });
    }
  }
  PropertyRows(Row row) { _rows.push_back(std::move(row)); }

  const std::vector<Row>& rows() const { return _rows; }

  /// The instance of that path with every row's property, or with those that are wanted.
  CmpiCpp::CmpiInstance makeInstance(const CmpiCpp::CmpiObjectPath& path, Subject subject,
                                     CmpiCpp::CmpiPropertyList wanted = nullptr) const {
    CmpiCpp::CmpiInstance instance = CmpiCpp::makeCmpiInstance(ZEBUtil::getBroker(), path);
    fill(instance, subject, wanted);
    return instance;
  }

  /// Adds every row's property to the instance, in order, or those that are wanted.
  void fill(CmpiCpp::CmpiInstance& instance, Subject& subject,
            CmpiCpp::CmpiPropertyList wanted = nullptr) const {
    // What is taken from another property needs that one as well.
    if (wanted && std::ranges::any_of(_rows, [&](const Row& row) {
          return row.readsOthers && CmpiCpp::isNamed(wanted, row.name->view());
        })) {
      fill(instance, subject);
      return instance.keepOnly(wanted);
    }
    if (!wanted) instance.reserve(_rows.size());
    const bool allNew = _distinct && instance.properties().empty();
    for (const Row& row : _rows) {
      if (wanted && row.name && !CmpiCpp::isNamed(wanted, row.name->view())) continue;
      auto value = row.read(subject, instance);
      if (!value) continue;
      if (allNew) {
        instance.appendProperty(*row.name, std::move(*value));
      } else {
        instance.addProperty(*row.name, std::move(*value));
      }
    }
  }

 private:
  std::vector<Row> _rows;
  bool _distinct = true;  ///< no two rows have one name, so that none has to be looked for
};

/// The builders of rows for one kind of subject: what a class reads its values from. A subject whose getters
/// are named in rows has them in a member `record`.
template <class Subject>
struct Properties {
  using Rows = PropertyRows<Subject>;

  /// The instance's key of that name, once more as a property.
  static Rows key(CmpiCpp::NameLiteral name) {
    return row(name, CMPI_string, [name](Subject&, const CmpiCpp::CmpiInstance& instance) {
      return std::optional(instance.path().getKey(name.view()));
    });
  }

  /// The keys of a device or an access point, whose own key has that name, once more as properties.
  static Rows systemScopedKeys(CmpiCpp::NameLiteral own) {
    return {key("CreationClassName"), key("SystemName"), key("SystemCreationClassName"), key(own)};
  }

  /// Something that happens between two rows.
  template <class Action>
  static Rows step(Action action) {
    return row(std::nullopt, CMPI_null,
               [action](Subject& subject, const CmpiCpp::CmpiInstance&) -> std::optional<CmpiCpp::CmpiData> {
                 action(subject);
                 return std::nullopt;
               });
  }

  static Rows string(CmpiCpp::NameLiteral name, SameAs other) {
    auto read = [other](Subject&, const CmpiCpp::CmpiInstance& instance) {
      const CmpiCpp::CmpiData* value = instance.findProperty(other.property.view());
      return value ? std::optional(*value) : std::nullopt;
    };
    return Rows(typename Rows::Row{name, CMPI_string, std::move(read), true});
  }

  template <class... Columns>
  static Rows string(CmpiCpp::NameLiteral name, Columns... columns) {
    return scalar<std::string>(name, columns...);
  }
  template <class... Columns>
  static Rows boolean(CmpiCpp::NameLiteral name, Columns... columns) {
    return scalar<bool>(name, columns...);
  }
  template <class... Columns>
  static Rows uint8(CmpiCpp::NameLiteral name, Columns... columns) {
    return scalar<std::uint8_t>(name, columns...);
  }
  template <class... Columns>
  static Rows uint16(CmpiCpp::NameLiteral name, Columns... columns) {
    return scalar<std::uint16_t>(name, columns...);
  }
  template <class... Columns>
  static Rows uint32(CmpiCpp::NameLiteral name, Columns... columns) {
    return scalar<std::uint32_t>(name, columns...);
  }
  template <class... Columns>
  static Rows uint64(CmpiCpp::NameLiteral name, Columns... columns) {
    return scalar<std::uint64_t>(name, columns...);
  }
  template <class... Columns>
  static Rows datetime(CmpiCpp::NameLiteral name, Columns... columns) {
    return scalar<CmpiCpp::CmpiDateTime>(name, columns...);
  }
  template <class... Columns>
  static Rows uint16Array(CmpiCpp::NameLiteral name, Columns... columns) {
    return list<std::uint16_t>(name, columns...);
  }
  template <class... Columns>
  static Rows stringArray(CmpiCpp::NameLiteral name, Columns... columns) {
    return list<std::string>(name, columns...);
  }

  /// "HealthState", "OperationalStatus" and "StatusDescriptions", all from one status.
  template <class Read>
  static Rows statusBlock(Read status) {
    return {
        uint16(
            "HealthState", [status](Subject& s) { return ZEBUtil::opstatusToHealthState(status(s)); },
            always),
        uint16Array("OperationalStatus", status, always),
        stringArray(
            "StatusDescriptions", [status](Subject& s) { return opstatusToString(status(s)); }, always),
    };
  }

 private:
  static Rows row(std::optional<CmpiCpp::NameLiteral> name, CMPIType type, typename Rows::Read read) {
    return Rows(typename Rows::Row{name, type, std::move(read)});
  }

  /// Calls a getter of the subject's record, or a function of the subject.
  template <class Record, class Value>
  static std::optional<Value> call(int (Record::*getter)(Value&) const, Subject& subject) {
    return known<Record>(subject.record, getter);
  }
  template <class Record, class Element>
  static std::vector<Element> call(std::vector<Element> (Record::*getter)() const, Subject& subject) {
    const Record& record = subject.record;
    return (record.*getter)();
  }
  template <class Function>
  requires std::invocable<Function, Subject&>
  static std::invoke_result_t<Function, Subject&> call(const Function& function, Subject& subject) {
    return function(subject);
  }

  template <class Source>
  using Result = decltype(call(std::declval<const Source&>(), std::declval<Subject&>()));

  template <class Cim, class Value>
  static Rows scalar(CmpiCpp::NameLiteral name, Constant<Value> fixed) {
    return row(name, detail::cimType<Cim>(),
               [data = detail::toData<Cim>(fixed.value)](Subject&, const CmpiCpp::CmpiInstance&) {
                 return std::optional(data);
               });
  }

  template <class Cim, class Source>
  requires(!detail::kIsOptional<Result<Source>>) static Rows
      scalar(CmpiCpp::NameLiteral name, Source source, Always) {
    return row(name, detail::cimType<Cim>(), [source](Subject& subject, const CmpiCpp::CmpiInstance&) {
      return std::optional(detail::toData<Cim>(call(source, subject)));
    });
  }

  template <class Cim, class Source>
  requires(detail::kIsOptional<Result<Source>>) static Rows
      scalar(CmpiCpp::NameLiteral name, Source source, Omit) {
    return row(name, detail::cimType<Cim>(),
               [source](Subject& subject, const CmpiCpp::CmpiInstance&) -> std::optional<CmpiCpp::CmpiData> {
                 const auto value = call(source, subject);
                 return value ? std::optional(detail::toData<Cim>(*value)) : std::nullopt;
               });
  }

  template <class Cim, class Source, class Value>
  requires(detail::kIsOptional<Result<Source>>) static Rows
      scalar(CmpiCpp::NameLiteral name, Source source, OrElse<Value> fallback) {
    return row(name, detail::cimType<Cim>(),
               [source, other = detail::toData<Cim>(fallback.value)](Subject& subject,
                                                                     const CmpiCpp::CmpiInstance&) {
                 const auto value = call(source, subject);
                 return std::optional(value ? detail::toData<Cim>(*value) : other);
               });
  }

  template <class Cim, class Value>
  static Rows list(CmpiCpp::NameLiteral name, Constant<Value> fixed) {
    return row(name, detail::arrayType<Cim>(),
               [data = detail::toArray<Cim>(fixed.value)](Subject&, const CmpiCpp::CmpiInstance&) {
                 return std::optional(data);
               });
  }

  template <class Cim, class Source>
  requires(!detail::kIsOptional<Result<Source>>) static Rows
      list(CmpiCpp::NameLiteral name, Source source, Always) {
    return row(name, detail::arrayType<Cim>(), [source](Subject& subject, const CmpiCpp::CmpiInstance&) {
      return std::optional(detail::toArray<Cim>(detail::asList(call(source, subject))));
    });
  }

  template <class Cim, class Source>
  requires(detail::kMayBeUnknown<Result<Source>>) static Rows
      list(CmpiCpp::NameLiteral name, Source source, Omit) {
    return row(name, detail::arrayType<Cim>(),
               [source](Subject& subject, const CmpiCpp::CmpiInstance&) -> std::optional<CmpiCpp::CmpiData> {
                 const auto values = detail::asList(call(source, subject));
                 return values.empty() ? std::nullopt : std::optional(detail::toArray<Cim>(values));
               });
  }

  template <class Cim, class Source, class Value>
  requires(detail::kMayBeUnknown<Result<Source>>) static Rows
      list(CmpiCpp::NameLiteral name, Source source, OrElse<Value> only) {
    return row(name, detail::arrayType<Cim>(),
               [source, other = detail::toArray<Cim>(std::initializer_list<Value>{only.value})](
                   Subject& subject, const CmpiCpp::CmpiInstance&) {
                 const auto values = detail::asList(call(source, subject));
                 return std::optional(values.empty() ? other : detail::toArray<Cim>(values));
               });
  }
};

}  // namespace ZEB
