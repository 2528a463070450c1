#include "cli/Modify.h"

#include <ostream>

#include "cli/Assignments.h"
#include "cli/DoctorReport.h"
#include "cli/JsonOutput.h"
#include "cli/Nearest.h"
#include "cli/TextOutput.h"
#include "values/CallMemory.h"
#include "values/ObjectPathText.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

std::string named(const PathBody& path) {
  return "path '" + formatPath(path) + "'";
}

const PropertyDef& requireWritable(const ClassDef& classDef, const std::string& name) {
  const PropertyDef* const property = classDef.property(name);
  if (!property) {
    std::vector<std::string> names;
    for (const PropertyDef& other : classDef.properties) names.push_back(other.name);
    throw ManagerError(classDef.name + " has no property '" + name + "'" + suggestion(name, names));
  }
  if (property->writable) return *property;
  std::string known;
  for (const PropertyDef& other : classDef.properties) {
    if (other.writable) known += (known.empty() ? ": can be written are " : ", ") + other.name;
  }
  throw ManagerError(classDef.name + "." + property->name + " cannot be written" +
                     (known.empty() ? ", nor can anything else of the class" : known));
}

class Change {
 public:
  Change(const Options& options, Session& session, Arena& arena, const ObjectPath& path)
      : _session(session),
        _path(path),
        _class(requireClass(session.repository(), path.body().className)),
        _instance(*makeInstance(arena, path, _class)) {
    for (const std::string& text : options.assignments) {
      const Assignment assignment = splitAssignment(text);
      const PropertyDef& property = requireWritable(_class, assignment.name);
      const CMPIData value = parseValue(arena, session.repository(), kNameSpace, property, assignment.value);
      _instance.ft->setProperty(&_instance, property.name.c_str(), &value.value, value.type);
      _names.push_back(property.name.c_str());
    }
    _names.push_back(nullptr);
  }

  void make() const {
    const Reply reply = _session.model().modifyInstance(_path, _instance, _names.data());
    if (reply.code != CMPI_RC_OK) fail(CimError(reply.code, reply.message).what());
  }

  void requireKept() const {
    const Reply reply = _session.model().getInstance(_path, nullptr);
    const Instance* const now = reply.items().empty() ? nullptr : as<Instance>(reply.items()[0].value.inst);
    if (reply.code != CMPI_RC_OK || !now) fail("it was accepted, and cannot be read again");
    for (const NamedValue& wanted : _instance.body().properties) {
      const NamedValue* const found = now->body().properties.find(wanted.name);
      const std::string is = found ? textOfValue(found->data) : "not there";
      if (is != textOfValue(wanted.data)) {
        fail("it was accepted and not kept: " + std::string(wanted.name) + " is " + is);
      }
    }
  }

 private:
  [[noreturn]] void fail(const std::string& why) const {
    throw ManagerError(named(_path.body()) + ": " + why);
  }

  Session& _session;
  const ObjectPath& _path;
  const ClassDef& _class;
  const Instance& _instance;
  std::vector<const char*> _names;
};

/// What a service serves is lost with it where it cannot write.
void requireStores(const std::string& runFolder) {
  std::optional<DoctorReport> report;
  try {
    report = readReport(runFolder);
  } catch (const ManagerError&) {
    // Reports are for root alone.
  }
  if (!report) return;
  for (const DoctorFile& store : report->stores) {
    if (!store.failure.empty()) {
      throw ManagerError("the change holds until the service ends: " + store.file + ": " + store.failure);
    }
  }
}

}  // namespace

void modify(const Options& options, Session& session, const Output& output) {
  Arena arena;
  const ArenaScope scope(arena);  // an error message needs memory, too
  const ObjectPath& path = pathOf(options, session, arena);
  const Change change(options, session, arena, path);
  if (session.keepsNothing()) {
    throw ManagerError("changes of a recording are kept where ZEB_STORE_DIR says, and it says nothing");
  }
  change.make();
  session.restart();
  change.requireKept();
  if (session.asksService()) requireStores(session.runFolder());
  if (options.json) output.out << jsonOfPath(path.body());
}

}  // namespace ZebManager
