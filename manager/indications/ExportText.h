// The XML of exports: what is added to an indication, and what a listener answers.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace ZebManager {

/// An INSTANCE element with SequenceContext and SequenceNumber, in the place of those that it has. Nothing
/// when the text is no such element.
std::optional<std::string> withSequence(std::string_view instanceElement, std::string_view context,
                                        std::int64_t number);

/// An INSTANCE element with no other properties than these. Nothing when the text is no such element.
std::optional<std::string> withProperties(std::string_view instanceElement,
                                          const std::vector<std::string>& names);

/// What a listener answered with status 200.
struct ExportAnswer {
  enum class Kind { Acknowledged, Refused, Unreadable };
  Kind kind;
  std::string reason = {};  ///< unless acknowledged
};

/// Acknowledged: an export response without an error, or nothing at all, as simple listeners answer.
ExportAnswer readExportAnswer(std::string_view body);

}  // namespace ZebManager
