#pragma once

#include <optional>

namespace ZEB {

/// What a getter of the data library answers, or nothing when the value is not known.
template <class Record, class Value>
std::optional<Value> known(const Record& record, int (Record::*getter)(Value&) const) {
  Value value{};
  if ((record.*getter)(value) != 0) return std::nullopt;
  return value;
}

/// Refreshes a record and gives a copy, whose getters all answer from one reading, whoever refreshes the
/// record meanwhile.
template <class Record, class... Part>
Record refreshed(Record& record, Part... part) {
  record.refresh(part...);
  if constexpr (requires { record.still(); }) {
    return record.still();
  } else {
    return record;
  }
}

}  // namespace ZEB
