#include "cli/Options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <ostream>

#include "cli/Nearest.h"

namespace ZebManager {
namespace {

void addGlobals(CLI::App& app, Options& options) {
  app.add_flag("--json{plain}", options.jsonWord,
               "Print JSON for programs; --json=typed with the type of each value")
      ->check(CLI::IsMember({"plain", "typed"}));
  app.add_option("--source", options.source, "Serve a recorded snapshot instead of this machine")
      ->type_name("FILE")
      ->envname("ZEB_SOURCE_FILE");
  app.add_flag("--standalone", options.standalone, "Load the plug-in though a service runs");
  app.add_flag("-v,--verbose", options.verbose, "Say on standard error who is asked");
  app.add_flag("--include-virtual", options.includeVirtual, "Treat virtual interfaces as ports");
  app.add_option("--plugin", options.plugin, "The plug-in to load")->type_name("FILE");
  app.add_option("--schema", options.schema, "The schema to serve")->type_name("FILE");
  app.add_option("--timeout", options.timeoutSeconds, "Seconds that the plug-in may take, 0 for no limit")
      ->capture_default_str();
}

void addNames(CLI::App& command, Options& options) {
  command.add_flag("--names", options.names, "Print object paths only");
}

void addPath(CLI::App& command, Options& options) {
  command
      .add_option("NAME", options.path,
                  "Name of an interface, a slot, a MAC address, or an object path, for example "
                  "'ZEB_EthernetTeam.InstanceID=\"...\"'")
      ->required();
}

void addAssociators(CLI::App& app, Options& options) {
  CLI::App& command = *app.add_subcommand("associators", "Instances that are associated with one");
  addPath(command, options);
  command.add_option("--assoc-class", options.filter.associationClass, "Through this association only");
  command.add_option("--result-class", options.filter.resultClass, "Instances of this class only");
  command.add_option("--role", options.filter.role, "Role of NAME in the association");
  command.add_option("--result-role", options.filter.resultRole, "Role of the other end");
  addNames(command, options);
}

void addReferences(CLI::App& app, Options& options) {
  CLI::App& command = *app.add_subcommand("references", "Associations that refer to an instance");
  addPath(command, options);
  command.add_option("--result-class", options.filter.resultClass, "Associations of this class only");
  command.add_option("--role", options.filter.role, "Role of NAME in the association");
  addNames(command, options);
}

void addWatch(CLI::App& app, Options& options) {
  CLI::App& command = *app.add_subcommand("watch", "Alerts as they come, until interrupted");
  command.add_option("--where", options.watchCondition, "Only alerts that meet this condition of a query")
      ->type_name("CONDITION");
  command.add_flag("--advice", options.advice, "With what is recommended to do");
  command.add_option("--for", options.watchSeconds, "End after this many seconds")
      ->type_name("SECONDS")
      ->check(CLI::Range(0.001, 1e8));
  command.add_option("--count", options.watchCount, "End after this many alerts")
      ->type_name("N")
      ->check(CLI::Range(std::uint64_t{1}, std::uint64_t{1} << 62));
}

void addCapture(CLI::App& app, Options& options) {
  CLI::App& command = *app.add_subcommand("capture", "Record this machine in a snapshot file for --source");
  command.add_option("FILE", options.path, "File to write, - for standard output")->required();
  command.add_flag("--anonymize", options.anonymize, "Replace addresses and serial numbers");
}

void addServe(CLI::App& app, Options& options) {
  CLI::App& command =
      *app.add_subcommand("serve", "Serve CIM clients over HTTP and HTTPS, until interrupted");
  command.add_option("--config", options.config, "The configuration to read")->type_name("FILE");
  command.add_option("--http", options.http, "Where to listen, 'none' for not at all")
      ->type_name("ADDRESS:PORT");
  command.add_option("--https", options.https, "The same with TLS")->type_name("ADDRESS:PORT");
  command.add_option("--state", options.state, "Folder for what has to survive a restart")
      ->type_name("FOLDER");
  command
      .add_option("--helpers", options.helpers,
                  "Folder of the sockets behind which the other processes start")
      ->type_name("FOLDER");
  CLI::App& complete = *app.add_subcommand("complete", "Words for a shell")->group("");
  complete.add_option("KIND", options.className)->required()->check(CLI::IsMember({"classes", "names"}));
  app.add_subcommand("examine", "What doctor asks the server's program")
      ->group("")
      ->add_option("--config", options.config);
  app.add_subcommand("provide", "The plug-in's process of a server")->group("");
}

void addCommands(CLI::App& app, Options& options) {
  app.add_subcommand("tree", "Cards, ports, teams and their addresses at a glance");
  addWatch(app, options);
  app.add_subcommand("doctor", "Whether everything is as it should be, and what to do")
      ->add_option("--config", options.config, "The configuration of the server")
      ->type_name("FILE");
  app.add_subcommand("check", "One line for monitoring, with exit status 0 to 3");
  app.add_subcommand("metrics", "Metrics as Prometheus reads them")
      ->add_flag("--openmetrics", options.openMetrics, "In the format OpenMetrics");
  addCapture(app, options);
  addServe(app, options);
  app.add_subcommand("classes", "Classes that are served");

  CLI::App& instances = *app.add_subcommand("instances", "Instances of a class and of its subclasses");
  instances
      .add_option("CLASS", options.className, "Name of the class, or a word such as ports, teams, cards")
      ->required();
  addNames(instances, options);

  addPath(*app.add_subcommand("get", "One instance"), options);
  CLI::App& explain = *app.add_subcommand("explain", "Where the values of an instance come from");
  addPath(explain, options);
  explain.add_option("PROPERTY", options.property, "One property alone");
  addAssociators(app, options);
  addReferences(app, options);

  CLI::App& modify = *app.add_subcommand("modify", "Change properties of an instance");
  addPath(modify, options);
  modify.add_option("Name=Value", options.assignments, "New values; elements of arrays stand between commas")
      ->required();

  CLI::App& invoke = *app.add_subcommand("invoke", "Call a method of an instance or of a class");
  invoke.add_option("NAME", options.path, "Name or object path of an instance, or the name of a class")
      ->required();
  invoke.add_option("METHOD", options.method, "Name of the method")->required();
  invoke.add_option("Name=Value", options.assignments, "Arguments");
}

/// The word that stands where a command is expected; empty when there is none.
std::string wrongCommand(const CLI::App& app, int argc, const char* const* argv) {
  std::vector<std::string> known;
  for (const CLI::App* command : app.get_subcommands([](const CLI::App*) { return true; })) {
    if (!command->get_group().empty()) known.push_back(command->get_name());
  }
  for (int i = 1; i < argc; ++i) {
    const std::string word = argv[i];
    if (word.starts_with("-")) {
      const CLI::Option* const option = app.get_option_no_throw(word.substr(0, word.find('=')));
      if (!option) return {};
      if (option->get_expected_min() > 0 && word.find('=') == std::string::npos) ++i;
      continue;
    }
    return "there is no command '" + word + "'" + suggestion(word, known);
  }
  return {};
}

/// The option that there is none of; empty when all are known.
std::string wrongOption(const CLI::App& app, const CLI::App& command, int argc, const char* const* argv) {
  std::vector<std::string> known;
  for (const CLI::App* const level : {&app, &command}) {
    for (const CLI::Option* option : level->get_options()) {
      for (const std::string& name : option->get_lnames()) known.push_back("--" + name);
    }
  }
  for (int i = 1; i < argc; ++i) {
    const std::string word = std::string(argv[i]).substr(0, std::string_view(argv[i]).find('='));
    if (word.starts_with("--") && word.size() > 2 && std::ranges::find(known, word) == known.end())
      return "there is no option '" + word + "'" + suggestion(word, known);
  }
  return {};
}

}  // namespace

std::optional<Options> parseOptions(int argc, const char* const* argv, std::ostream& out, std::ostream& err,
                                    int& exitStatus) {
  Options options;
  CLI::App app("CIM object manager for the Ethernet of this machine", "zebcim");
  app.require_subcommand(1);
  app.fallthrough();
  app.set_version_flag("--version", "zebcim " ZEB_VERSION, "Print the version and end");
  addGlobals(app, options);
  app.footer("zebcim --help lists the options that every command has.");  // taken over by each of them
  addCommands(app, options);
  app.footer("");
  try {
    app.parse(argc, argv);
  } catch (const CLI::Success& help) {
    exitStatus = app.exit(help, out, err);
    return std::nullopt;
  } catch (const CLI::ParseError& error) {
    const auto commands = app.get_subcommands();
    const std::string wrong =
        commands.empty() ? wrongCommand(app, argc, argv) : wrongOption(app, *commands.front(), argc, argv);
    err << "zebcim: " << (wrong.empty() ? error.what() : wrong) << "\n"
        << (commands.empty() ? app.help() : commands.front()->help(app.get_name()));
    const bool check = !commands.empty() && commands.front()->get_name() == "check";
    exitStatus = check ? kUnknown : 2;
    return std::nullopt;
  }
  options.json = !options.jsonWord.empty();
  options.command = app.get_subcommands().front()->get_name();
  return options;
}

}  // namespace ZebManager
