#include "pull/PulledOperations.h"

#include <algorithm>
#include <array>
#include <optional>

#include "cimxml/Answer.h"
#include "cimxml/Document.h"
#include "cimxml/Parameters.h"
#include "pull/PullErrors.h"

namespace ZebManager {
namespace {

/// Bounds what one answer takes; the standard lets a server give less than a client would take.
constexpr std::size_t kMostOfOnePull = 1000;
/// The longest time that a client may ask for, against the one that it has without asking.
constexpr int kTimesForClients = 15;

/// Elements as they go out, and why there are no more.
struct Chunk {
  std::string elements;
  std::optional<CimError> error = std::nullopt;
};

Chunk pathsOf(PulledEnumeration& enumeration, std::size_t most) {
  Chunk chunk;
  const std::vector<std::string> paths = enumeration.peek(most);
  for (const std::string& path : paths) chunk.elements += path;
  enumeration.use(paths.size());
  return chunk;
}

/// An error comes alone: with elements before it, the next chunk begins with it.
Chunk instancesOf(PulledEnumeration& enumeration, std::size_t most, const StepPerformer& perform) {
  const bool query = enumeration.kind == PulledKind::QueryResults;
  for (;;) {
    const std::vector<std::string> paths = enumeration.peek(query ? kMostOfOnePull : most);
    FetchedInstances fetched = readFetched(perform(fetchingStep(enumeration.plan, most, paths)));
    const bool alone = fetched.error && fetched.elements == 0;
    const std::uint64_t used = fetched.used - (fetched.error && !alone ? 1 : 0);
    if (used == 0 || used > paths.size()) throw TextListError("a step that got nowhere");
    enumeration.use(used);
    if (alone) return {{}, std::move(fetched.error)};
    if (fetched.elements > 0 || query || enumeration.atEnd()) return {std::move(fetched.text)};
  }
}

Chunk nextOf(PulledEnumeration& enumeration, std::uint32_t wanted, const StepPerformer& perform) {
  const std::size_t most = std::min<std::size_t>(wanted, kMostOfOnePull);
  if (most == 0 || enumeration.atEnd()) return {};
  return enumeration.kind == PulledKind::Paths ? pathsOf(enumeration, most)
                                               : instancesOf(enumeration, most, perform);
}

PulledKind pulledBy(std::string_view operation) {
  if (sameName(operation, "PullInstancePaths")) return PulledKind::Paths;
  return sameName(operation, "PullInstances") ? PulledKind::QueryResults : PulledKind::Instances;
}

std::string resultsOf(const std::string& elements, const std::string& context) {
  std::string out = "<IRETURNVALUE>" + elements + "</IRETURNVALUE>";
  out += "<PARAMVALUE NAME=\"EnumerationContext\" PARAMTYPE=\"string\">";
  if (!context.empty()) out += "<VALUE>" + context + "</VALUE>";
  out += "</PARAMVALUE><PARAMVALUE NAME=\"EndOfSequence\" PARAMTYPE=\"boolean\"><VALUE>";
  return out + (context.empty() ? "TRUE" : "FALSE") + "</VALUE></PARAMVALUE>";
}

/// Filters of enumerations have a language of their own, which is not read.
void refuseFilter(const Parameters& parameters) {
  const bool language = static_cast<bool>(parameters.element("FilterQueryLanguage"));
  const bool query = static_cast<bool>(parameters.element("FilterQuery"));
  if (language != query) {
    throw CimError(CMPI_RC_ERR_INVALID_PARAMETER, "FilterQuery and FilterQueryLanguage belong together");
  }
  if (query) throw CimError(kFilteredEnumerationNotSupported, "enumerations are not filtered");
}

std::chrono::seconds timeOf(const Parameters& parameters, std::chrono::seconds usual) {
  const auto asked = parameters.number("OperationTimeout");
  if (!asked) return usual;
  const std::chrono::seconds longest = usual * kTimesForClients;
  if (*asked == 0 || std::chrono::seconds(*asked) > longest) {
    throw CimError(kInvalidOperationTimeout,
                   "OperationTimeout has to be from 1 to " + std::to_string(longest.count()));
  }
  return std::chrono::seconds(*asked);
}

}  // namespace

struct PulledOperations::Asked {
  std::string_view body;
  const CimMessage& message;
  const EnumerationOwner owner;
  const StepPerformer& perform;
  const Parameters& parameters;

  std::string context() const {
    static_cast<void>(parameters.required("EnumerationContext"));
    return parameters.text("EnumerationContext");
  }
};

struct PulledOperations::Row {
  std::string_view name;
  std::string_view parameters;  ///< that it takes, between blanks
  std::string (PulledOperations::*perform)(const Asked& asked);
};

const PulledOperations::Row* PulledOperations::find(std::string_view operation) {
  static constexpr std::array kRows = {
      Row{"PullInstancesWithPath", "EnumerationContext MaxObjectCount", &PulledOperations::pull},
      Row{"PullInstancePaths", "EnumerationContext MaxObjectCount", &PulledOperations::pull},
      Row{"PullInstances", "EnumerationContext MaxObjectCount", &PulledOperations::pull},
      Row{"CloseEnumeration", "EnumerationContext", &PulledOperations::close},
      Row{"EnumerationCount", "EnumerationContext", &PulledOperations::count},
  };
  const auto* const found =
      std::find_if(kRows.begin(), kRows.end(), [&](const Row& row) { return sameName(row.name, operation); });
  return found == kRows.end() ? nullptr : found;
}

bool PulledOperations::have(const CimMessage& message) {
  return message.intrinsic && (findOpenOperation(message.operation) || find(message.operation));
}

std::string PulledOperations::answer(std::string_view body, const CimMessage& message,
                                     const std::string& user, const StepPerformer& perform) {
  try {
    pugi::xml_document document;
    readDocument(body, kDeepestOfAll, document);
    const Parameters parameters(callOf(document));
    const Asked asked{body, message, {user, message.nameSpace}, perform, parameters};
    const Row* const row = find(message.operation);
    parameters.allowOnly(row ? row->parameters : findOpenOperation(message.operation)->parameters);
    return contentAnswer(message, row ? (this->*row->perform)(asked) : open(asked));
  } catch (const CimError& error) {
    return errorAnswer(message, error.code, descriptionOf(error));
  } catch (const TextListError& error) {
    return errorAnswer(message, CMPI_RC_ERR_FAILED, error.what());
  }
}

std::shared_ptr<PulledEnumeration> PulledOperations::opened(const Asked& asked, std::string& resultClass) {
  const PulledKind kind = findOpenOperation(asked.message.operation)->kind;
  if (kind != PulledKind::QueryResults) refuseFilter(asked.parameters);
  const std::chrono::seconds time = timeOf(asked.parameters, _limits.time);
  const bool continues = asked.parameters.flag("ContinueOnError", false);
  _table.requirePlace(asked.owner.user);
  OpenedEnumeration found = readOpened(asked.perform(openingStep(asked.body)));
  resultClass = std::move(found.resultClass);
  auto enumeration = std::make_shared<PulledEnumeration>(asked.owner, kind, std::move(found));
  enumeration->time = time;
  enumeration->continueOnError = continues;
  return enumeration;
}

/// An error of the first elements is one of the operation: nothing is open then.
std::string PulledOperations::open(const Asked& asked) {
  const std::uint32_t most = asked.parameters.number("MaxObjectCount").value_or(0);
  std::string resultClass;
  const auto enumeration = opened(asked, resultClass);
  const Chunk chunk = nextOf(*enumeration, most, asked.perform);
  if (chunk.error) throw CimError(*chunk.error);
  std::string results =
      resultsOf(chunk.elements, enumeration->atEnd() ? std::string() : _table.add(enumeration));
  if (!resultClass.empty())
    results += "<PARAMVALUE NAME=\"QueryResultClass\">" + resultClass + "</PARAMVALUE>";
  return results;
}

std::string PulledOperations::pull(const Asked& asked) {
  const std::string name = asked.context();
  static_cast<void>(asked.parameters.required("MaxObjectCount"));
  const std::uint32_t most = *asked.parameters.number("MaxObjectCount");
  const auto enumeration = _table.take(name, asked.owner, pulledBy(asked.message.operation));
  Chunk chunk;
  try {
    chunk = nextOf(*enumeration, most, asked.perform);
  } catch (...) {
    _table.giveBack(name, enumeration->continueOnError);
    throw;
  }
  const bool stays = chunk.error ? enumeration->continueOnError : !enumeration->atEnd();
  if (!_table.giveBack(name, stays)) throw CimError(kPullHasBeenAbandoned, "the enumeration was closed");
  if (chunk.error) throw CimError(*chunk.error);
  return resultsOf(chunk.elements, stays ? name : std::string());
}

std::string PulledOperations::close(const Asked& asked) {
  _table.close(asked.context(), asked.owner);
  return {};
}

std::string PulledOperations::count(const Asked& asked) {
  const std::string name = asked.context();
  const auto enumeration = _table.take(name, asked.owner);
  _table.giveBack(name, true);
  if (enumeration->kind == PulledKind::QueryResults)
    throw CimError(CMPI_RC_ERR_NOT_SUPPORTED, "nobody has counted what the query selects");
  return "<IRETURNVALUE><VALUE>" + std::to_string(enumeration->count) + "</VALUE></IRETURNVALUE>";
}

}  // namespace ZebManager
