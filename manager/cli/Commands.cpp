#include "cli/Commands.h"

#include <net/if.h>

#include <algorithm>
#include <array>
#include <optional>
#include <ostream>

#include "cimxml/AnswerReader.h"
#include "cli/Assignments.h"
#include "cli/Check.h"
#include "cli/Doctor.h"
#include "cli/Explain.h"
#include "cli/InterfaceNames.h"
#include "cli/JsonOutput.h"
#include "cli/LargePages.h"
#include "cli/Metrics.h"
#include "cli/Modify.h"
#include "cli/Nearest.h"
#include "cli/PluginProcess.h"
#include "cli/Programs.h"
#include "cli/ShortNames.h"
#include "cli/ShownInstances.h"
#include "cli/TextOutput.h"
#include "cli/TreeModel.h"
#include "cli/Watch.h"
#include "values/CallMemory.h"
#include "values/ObjectPathText.h"
#include "values/Values.h"

namespace ZebManager {
namespace {

using Command = void (*)(const Options&, Session&, const Output&);

bool anyNamed(const ClassRepository& repository, const Reply& reply) {
  return std::ranges::any_of(reply.items(), [&](const CMPIData& item) {
    const PathBody* const path = item.type == CMPI_instance ? as<Instance>(item.value.inst)->body().path
                                 : item.type == CMPI_ref    ? &as<ObjectPath>(item.value.ref)->body()
                                                            : nullptr;
    return path && InterfaceNames::has(repository, path->className);
  });
}

void printItems(const Options& options, Session& session, const Output& output, const Reply& reply) {
  if (options.json) return writeItems(output.out, reply.items(), options.jsonForm());
  // What is printed for programs has paths alone.
  std::optional<InterfaceNames> names;
  if ((!options.names || output.width > 0) && anyNamed(session.repository(), reply)) {
    names.emplace(session.model(), reply.items());
  }
  output.out << textOfItems(reply.items(), output.colour, names ? &*names : nullptr);
}

/// The plug-in's refusal, with the thing that was asked for in front.
Reply answered(const std::string& what, Reply reply) {
  if (reply.code != CMPI_RC_OK) throw ManagerError(what + ": " + CimError(reply.code, reply.message).what());
  return reply;
}

std::string named(const PathBody& path) {
  return "path '" + formatPath(path) + "'";
}

void runClasses(const Options& options, Session& session, const Output& output) {
  std::vector<const ClassDef*> served;
  for (const auto& def : session.repository().classes()) {
    if (def->name.starts_with("ZEB_")) served.push_back(def.get());
  }
  output.out << (options.json ? jsonOfClasses(served) : textOfClasses(served, output.colour));
}

/// Of a service, or else of the plug-in.
void showJson(const ClassDef& asked, const Options& options, Session& session, const Output& output) {
  try {
    auto shown = session.shown(asked.name);
    if (!shown) {
      shown = jsonOfClass(session.model(), {asked.name, options.jsonForm()});
    } else if (!isJson(*shown)) {
      static_cast<void>(readAnswer(*shown, session.repository(), kNameSpace).orThrow());
    }
    output.out << *shown;
  } catch (const CimError& error) {
    throw ManagerError("class '" + asked.name + "': " + error.what());
  }
}

void runInstances(const Options& options, Session& session, const Output& output) {
  const ClassDef& asked = classMeant(session.repository(), options.className);
  // JSON names no interfaces beside the paths.
  if (options.json) session.askOnlyFor(asked);
  if (options.json && !options.names) return showJson(asked, options, session, output);
  Namespace& model = session.model();
  Reply reply = options.names ? model.enumerateInstanceNames(asked.name)
                              : model.enumerateInstances(asked.name, nullptr);
  printItems(options, session, output, answered("class '" + asked.name + "'", std::move(reply)));
}

void runGet(const Options& options, Session& session, const Output& output) {
  Arena arena;
  const ObjectPath& path = pathOf(options, session, arena);
  const Reply reply = answered(named(path.body()), session.model().getInstance(path, nullptr));
  if (reply.items().empty() || reply.items()[0].type != CMPI_instance) {
    throw ManagerError(named(path.body()) + ": " + codeText(CMPI_RC_ERR_NOT_FOUND));
  }
  printItems(options, session, output, reply);
}

void requireClasses(const Options& options, const ClassRepository& repository) {
  for (const std::string& name : {options.filter.associationClass, options.filter.resultClass}) {
    if (!name.empty() && !repository.find(name)) classMeant(repository, name);
  }
}

void runAssociators(const Options& options, Session& session, const Output& output) {
  requireClasses(options, session.repository());
  Arena arena;
  const ObjectPath& path = pathOf(options, session, arena);
  Namespace& model = session.model();
  Reply reply = options.names ? model.associatorNames(path, options.filter)
                              : model.associators(path, options.filter, nullptr);
  printItems(options, session, output, answered(named(path.body()), std::move(reply)));
}

void runReferences(const Options& options, Session& session, const Output& output) {
  requireClasses(options, session.repository());
  Arena arena;
  const ObjectPath& path = pathOf(options, session, arena);
  Namespace& model = session.model();
  Reply reply = options.names ? model.referenceNames(path, options.filter)
                              : model.references(path, options.filter, nullptr);
  printItems(options, session, output, answered(named(path.body()), std::move(reply)));
}

/// A path with keys, or the name of a class for methods that belong to the class.
ObjectPath& targetOf(const Options& options, Session& session, Arena& arena) {
  const ClassDef* const target = session.repository().find(options.path);
  if (!target) return pathOf(options, session, arena);
  return *makePath(arena, kNameSpace, target->name);
}

const MethodDef& requireMethod(const ClassDef& classDef, const std::string& name) {
  if (const MethodDef* method = classDef.method(name)) return *method;
  std::string known;
  for (const MethodDef& method : classDef.methods)
    known += (known.empty() ? ": expected " : ", ") + method.name;
  throw ManagerError(classDef.name + " has no method '" + name + "'" + known);
}

void runInvoke(const Options& options, Session& session, const Output& output) {
  Arena arena;
  const ArenaScope scope(arena);
  const ObjectPath& path = targetOf(options, session, arena);
  const ClassDef& classDef = requireClass(session.repository(), path.body().className);
  const MethodDef& method = requireMethod(classDef, options.method);
  const Args& in = *makeArgs(arena);
  for (const std::string& text : options.assignments) {
    const Assignment assignment = splitAssignment(text);
    const ParameterDef* const parameter = method.parameter(assignment.name);
    if (!parameter || !parameter->in) {
      std::vector<std::string> known;
      for (const ParameterDef& other : method.parameters) {
        if (other.in) known.push_back(other.name);
      }
      throw ManagerError(method.name + " takes no argument '" + assignment.name + "'" +
                         suggestion(assignment.name, known));
    }
    const CMPIData value = parseValue(arena, session.repository(), kNameSpace, *parameter, assignment.value);
    in.ft->addArg(&in, parameter->name.c_str(), &value.value, value.type);
  }
  Args& out = *makeArgs(arena);
  const Reply reply = answered(named(path.body()) + " method " + method.name,
                               session.model().invokeMethod(path, method.name.c_str(), in, out));
  const CMPIData returned = reply.items().empty() ? nullOf(method.type) : reply.items()[0];
  const NamedValues& arguments = out.body().values;
  output.out << (options.json ? jsonOfMethod(returned, arguments, options.jsonForm())
                              : textOfMethod(method, returned, arguments));
}

/// Names of what is no adapter and could be shown.
std::string virtualHint(const Options& options) {
  if (!options.source.empty() || options.includeVirtual) return {};
  std::vector<std::string> names;
  struct if_nameindex* const all = if_nameindex();
  for (const struct if_nameindex* one = all; one && one->if_name; ++one) {
    if (std::string_view(one->if_name) != "lo") names.emplace_back(one->if_name);
  }
  if (all) if_freenameindex(all);
  return names.empty() ? "" : "--include-virtual shows " + listed(names);
}

void runTree(const Options& options, Session& session, const Output& output) {
  Tree tree = readTree(session.model());
  if (tree.cards.empty()) tree.hint = virtualHint(options);
  output.out << (options.json ? jsonOfTree(tree)
                              : textOfTree(tree, output.colour, linesOfLocale(), output.width));
}

void runMetrics(const Options& options, Session& session, const Output& output) {
  const MetricFormat format = options.openMetrics ? MetricFormat::OpenMetrics : MetricFormat::Text;
  if (const auto service = session.service()) {
    output.out << service->ask(metricsMessage(format));
    return;
  }
  Namespace& model = session.model();
  const auto worker = options.wantsPlugin() ? std::nullopt : readWorker(session.runFolder());
  const auto partners = [&] { return readPartners(session.provider().linkPartners()); };
  output.out << Metrics().text(model, partners, worker, format) << endOf(format);
}

void runWatch(const Options& options, Session& session, const Output& output) {
  watchAlerts(options, session, output);
}

/// What a shell may complete a word to, one a line.
void runComplete(const Options& options, Session& session, const Output& output) {
  for (const std::string& word :
       options.className == "classes" ? classWords(session.repository()) : instanceWords(session.model())) {
    output.out << word << "\n";
  }
}

void runCapture(const Options& options, Session&, const Output&) {
  if (!options.source.empty()) {
    throw ManagerError("capture records this machine, and takes no --source: a recording is there already");
  }
  std::vector<std::string> words = {"zeb-capture"};
  if (options.anonymize) words.emplace_back("--anonymize");
  words.push_back(options.path);
  become(words.front(), words);
}

struct CommandRow {
  const char* name;
  Command run;
};

constexpr std::array kCommands = {
    CommandRow{"classes", runClasses},
    CommandRow{"instances", runInstances},
    CommandRow{"get", runGet},
    CommandRow{"explain", explain},
    CommandRow{"associators", runAssociators},
    CommandRow{"references", runReferences},
    CommandRow{"modify", modify},
    CommandRow{"invoke", runInvoke},
    CommandRow{"tree", runTree},
    CommandRow{"metrics", runMetrics},
    CommandRow{"watch", runWatch},
    CommandRow{"capture", runCapture},
    CommandRow{"complete", runComplete},
};

}  // namespace

ObjectPath& pathOf(const Options& options, Session& session, Arena& arena) {
  return instanceMeant(session, arena, options.path);
}

void runCommand(const Options& options, Session& session, const Output& output) {
  const auto* const found = std::find_if(kCommands.begin(), kCommands.end(),
                                         [&](const CommandRow& row) { return options.command == row.name; });
  found->run(options, session, output);
}

int runZebcim(int argc, const char* const* argv, const Output& output) {
  std::ostream& out = output.out;
  std::ostream& err = output.err;
  int exitStatus = 0;
  const auto options = parseOptions(argc, argv, out, err, exitStatus);
  if (!options) return exitStatus;
  try {
    if (options->command == "doctor") return diagnose(*options, output);
    if (options->command == "check") return check(*options, output);
    if (options->command == "serve") become("zebcim-server", {argv, argv + argc});
    if (options->command == "provide") return runPluginProcess(*options);
    useLargePages();
    Session session(*options);
    runCommand(*options, session, output);
    if (!out.flush()) throw ManagerError("cannot write the output");
    session.endProcess();
    return 0;
  } catch (const std::exception& error) {
    err << "zebcim: " << oneLine(error.what()) << "\n";
    return 1;
  }
}

}  // namespace ZebManager
