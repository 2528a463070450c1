// The text form of CIM datetimes: yyyymmddhhmmss.mmmmmm+utc for a time, ddddddddhhmmss.mmmmmm:000 for an
// interval.
#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "values/Objects.h"

namespace ZebManager {

/// A time is written in UTC.
std::string formatDateTime(const DateTimeBody& value);

/// Nothing when the text is no datetime. Fields that stand as asterisks count as their lowest value.
std::optional<DateTimeBody> parseDateTime(std::string_view text);

}  // namespace ZebManager
