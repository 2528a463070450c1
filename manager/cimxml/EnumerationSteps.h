// What an enumeration that a client pulls consists of, performed on a namespace step by step: first the paths
// of all its instances, then the instances at some of them, as often as it takes. Instances that cannot be
// asked for by name come whole in the place of their paths. Who keeps the paths in between need not be where
// the namespace is, so a step and what comes of it are texts.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "broker/Namespace.h"

namespace ZebManager {

/// What the elements of an enumeration are.
enum class PulledKind { Instances, Paths, QueryResults };

/// An operation that opens one.
struct OpenOperation {
  std::string_view name;
  PulledKind kind;
  std::string_view parameters;  ///< that it takes, between blanks
};
/// Null when there is no such operation.
const OpenOperation* findOpenOperation(std::string_view name);

/// What opening comes to.
struct OpenedEnumeration {
  std::string plan;   ///< what the later steps have to know
  std::string paths;  ///< a TextList of INSTANCEPATH elements, and of elements of instances without a name
  std::uint64_t count = 0;  ///< of both
  std::string resultClass;  ///< of a query: a CLASS element
};

/// What was fetched.
struct FetchedInstances {
  std::uint64_t used = 0;      ///< paths, from the first
  std::uint64_t elements = 0;  ///< that are in the text; instances that are gone are left out
  std::string text;            ///< VALUE.INSTANCEWITHPATH elements, or INSTANCE elements of a query
  std::optional<CimError> error = std::nullopt;  ///< why the instance at the last path that was used is none
};

/// The step that begins: the request as it came.
std::string openingStep(std::string_view body);
/// A step that fetches instances, `most` at most.
std::string fetchingStep(const std::string& plan, std::uint64_t most, const std::vector<std::string>& paths);
/// Whether a message is a step. No document of XML is.
bool isStep(std::string_view message);

/// Performs a step on its namespace. What is refused is in the answer. Throws TextListError or MessageError
/// for what the functions above did not make.
std::string performStep(std::string_view step, Namespace& target);

/// Read the answers. Throw CimError where the step was refused, TextListError for other answers.
OpenedEnumeration readOpened(std::string_view answer);
FetchedInstances readFetched(std::string_view answer);

}  // namespace ZebManager
