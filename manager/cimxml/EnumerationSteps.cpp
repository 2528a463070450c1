#include "cimxml/EnumerationSteps.h"

#include <algorithm>
#include <array>
#include <set>
#include <utility>

#include "cimxml/Answer.h"
#include "cimxml/Document.h"
#include "cimxml/EnumerationPlan.h"
#include "cimxml/Operations.h"
#include "cimxml/PropertyNames.h"
#include "cimxml/QueryOperations.h"
#include "cimxml/TextList.h"

namespace ZebManager {
namespace {

/// No document of XML begins with it.
constexpr char kMark = '\x01';
constexpr std::string_view kOpen = "open";
constexpr std::string_view kFetch = "fetch";
void takeProperties(EnumerationPlan& plan, const Request& request, const std::string& className) {
  if (const auto given = request.parameters.names("PropertyList"))
    plan.properties = thoseOf(classesBelow(request.repository(), className), *given);
  plan.classOrigin = request.parameters.flag("IncludeClassOrigin", false);
}

/// The paths that an operation comes to; of those whose elements are instances also how they are written.
/// `root`: the class all of whose instances are wanted, also those that cannot be asked for by name; else
/// null.
using Begin = Reply (*)(const Request& request, PulledKind kind, EnumerationPlan& plan,
                        const ClassDef*& root);

Reply beginEnumerate(const Request& request, PulledKind kind, EnumerationPlan& plan, const ClassDef*& root) {
  const ClassDef& asked = askedClass(request);
  if (kind == PulledKind::Instances) {
    root = &asked;
    takeProperties(plan, request, asked.name);
    if (!request.parameters.flag("DeepInheritance", true)) plan.only = asked.name;
  }
  return request.target.enumerateInstanceNames(asked.name);
}

Reply beginAssociators(const Request& request, PulledKind kind, EnumerationPlan& plan, const ClassDef*&) {
  const AssociationFilter filter = associationFilterOf(request);
  if (kind == PulledKind::Instances) takeProperties(plan, request, filter.resultClass);
  return request.target.associatorNames(askedPath(request), filter);
}

Reply beginReferences(const Request& request, PulledKind kind, EnumerationPlan& plan, const ClassDef*&) {
  const AssociationFilter filter = associationFilterOf(request);
  if (kind == PulledKind::Instances) takeProperties(plan, request, filter.resultClass);
  return request.target.referenceNames(askedPath(request), filter);
}

Reply beginQuery(const Request& request, PulledKind, EnumerationPlan& plan, const ClassDef*& root) {
  plan.query = request.parameters.text("FilterQuery");
  const AskedQuery asked(request, "FilterQueryLanguage", "FilterQuery");
  root = request.repository().find(asked.query().className);
  return request.target.enumerateInstanceNames(asked.query().className);
}

struct OpenRow : OpenOperation {
  Begin begin;
};

#define ZEB_OPEN " FilterQueryLanguage FilterQuery OperationTimeout ContinueOnError MaxObjectCount"
constexpr std::array kRows = {
    OpenRow{{"OpenEnumerateInstances", PulledKind::Instances,
             "ClassName DeepInheritance IncludeClassOrigin PropertyList" ZEB_OPEN},
            beginEnumerate},
    OpenRow{{"OpenEnumerateInstancePaths", PulledKind::Paths, "ClassName" ZEB_OPEN}, beginEnumerate},
    OpenRow{{"OpenAssociatorInstances", PulledKind::Instances,
             "InstanceName AssocClass ResultClass Role ResultRole IncludeClassOrigin PropertyList" ZEB_OPEN},
            beginAssociators},
    OpenRow{{"OpenAssociatorInstancePaths", PulledKind::Paths,
             "InstanceName AssocClass ResultClass Role ResultRole" ZEB_OPEN},
            beginAssociators},
    OpenRow{{"OpenReferenceInstances", PulledKind::Instances,
             "InstanceName ResultClass Role IncludeClassOrigin PropertyList" ZEB_OPEN},
            beginReferences},
    OpenRow{{"OpenReferenceInstancePaths", PulledKind::Paths, "InstanceName ResultClass Role" ZEB_OPEN},
            beginReferences},
    OpenRow{{"OpenQueryInstances", PulledKind::QueryResults, "ReturnQueryResultClass" ZEB_OPEN}, beginQuery},
};
#undef ZEB_OPEN

const OpenRow* findRow(std::string_view name) {
  const auto* const found =
      std::find_if(kRows.begin(), kRows.end(), [&](const OpenRow& row) { return sameName(row.name, name); });
  return found == kRows.end() ? nullptr : found;
}

/// Answers begin with a code and its text.
TextList begun(CMPIrc code = CMPI_RC_OK, std::string_view why = {}) {
  TextList answer;
  answer.append(std::to_string(code));
  answer.append(why);
  return answer;
}

std::string open(std::string_view body, Namespace& target) {
  pugi::xml_document document;
  readDocument(body, kDeepestOfAll, document);
  const pugi::xml_node call = callOf(document);
  const CimMessage message = messageOf(call);
  const OpenRow* const row = findRow(message.operation);
  if (!row) throw TextListError("a step that opens nothing");
  Arena arena;
  const ArenaScope scope(arena);
  const Parameters parameters(call);
  const ValueReader reader(arena, target.repository(), message.nameSpace);
  const Request request{target, parameters, reader, message.nameSpace};
  EnumerationPlan plan;
  plan.nameSpace = message.nameSpace;
  const ClassDef* root = nullptr;
  const Reply reply = row->begin(request, row->kind, plan, root).orThrow();
  TextList paths;
  std::set<const ClassDef*> named;
  for (const CMPIData& item : reply.items()) {
    const ObjectPath* const path = as<ObjectPath>(item.value.ref);
    if (!path) continue;
    paths.append(pathTextOf(path->body()));
    if (const ClassDef* const classDef = target.repository().find(path->body().className))
      named.insert(classDef);
  }
  if (root) PlannedElements(plan, target).keepUnnamed(*root, named, paths);
  TextList answer = begun();
  answer.append(textOf(plan));
  answer.append(std::to_string(paths.count()));
  answer.append(row->kind == PulledKind::QueryResults ? queryResultClass(request) : std::string());
  answer.append(paths.bytes());
  return std::move(answer).takeBytes();
}

std::string fetch(TextListReader& step, Namespace& target) {
  const EnumerationPlan plan = enumerationPlanOf(step.next());
  const std::uint64_t most = step.nextNumber();
  FetchedInstances fetched;
  const PlannedElements elements(plan, target);
  while (!step.atEnd() && fetched.elements < most && !fetched.error) {
    const std::string& text = step.next();
    ++fetched.used;
    if (PlannedElements::isKept(text)) {
      fetched.text += text;
      ++fetched.elements;
      continue;
    }
    pugi::xml_document document;
    constexpr unsigned kOptions = pugi::parse_default | pugi::parse_ws_pcdata_single;
    if (!document.load_buffer(text.data(), text.size(), kOptions, pugi::encoding_utf8))
      throw TextListError("a path that is no XML");
    Arena arena;
    const ArenaScope scope(arena);
    try {
      const ValueReader reader(arena, target.repository(), plan.nameSpace);
      if (elements.fetch(text, *reader.path(firstElement(document.root())), fetched.text)) ++fetched.elements;
    } catch (const CimError& error) {
      fetched.error = error;
    }
  }
  TextList answer = begun(fetched.error ? fetched.error->code : CMPI_RC_OK,
                          fetched.error ? descriptionOf(*fetched.error) : std::string_view());
  answer.append(std::to_string(fetched.used));
  answer.append(std::to_string(fetched.elements));
  answer.append(fetched.text);
  return std::move(answer).takeBytes();
}

/// The error that an answer begins with.
std::optional<CimError> takeError(TextListReader& answer) {
  const auto code = static_cast<CMPIrc>(answer.nextNumber());
  const std::string why = answer.next();
  return code == CMPI_RC_OK ? std::nullopt : std::optional<CimError>(CimError(code, why));
}

}  // namespace

const OpenOperation* findOpenOperation(std::string_view name) {
  return findRow(name);
}

std::string openingStep(std::string_view body) {
  TextList step;
  step.append(kOpen);
  step.append(body);
  return kMark + step.bytes();
}

std::string fetchingStep(const std::string& plan, std::uint64_t most, const std::vector<std::string>& paths) {
  TextList step;
  step.append(kFetch);
  step.append(plan);
  step.append(std::to_string(most));
  for (const std::string& path : paths) step.append(path);
  return kMark + step.bytes();
}

bool isStep(std::string_view message) {
  return message.starts_with(kMark);
}

std::string performStep(std::string_view step, Namespace& target) {
  TextListReader reader(step.substr(std::min<std::size_t>(1, step.size())));
  try {
    const bool opens = reader.next() == kOpen;
    return opens ? open(reader.next(), target) : fetch(reader, target);
  } catch (const CimError& error) {
    return begun(error.code, descriptionOf(error)).bytes();
  }
}

OpenedEnumeration readOpened(std::string_view answer) {
  TextListReader reader(answer);
  if (const auto error = takeError(reader)) throw *error;
  OpenedEnumeration opened;
  opened.plan = reader.next();
  opened.count = reader.nextNumber();
  opened.resultClass = reader.next();
  opened.paths = reader.next();
  return opened;
}

FetchedInstances readFetched(std::string_view answer) {
  TextListReader reader(answer);
  FetchedInstances fetched;
  fetched.error = takeError(reader);
  if (reader.atEnd() && fetched.error) throw CimError(*fetched.error);
  fetched.used = reader.nextNumber();
  fetched.elements = reader.nextNumber();
  fetched.text = reader.next();
  return fetched;
}

}  // namespace ZebManager
