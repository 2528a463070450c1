// The commands of zebcim.
#pragma once

#include <iosfwd>
#include <string>

#include "cli/Options.h"
#include "cli/Session.h"

namespace ZebHost {

/// Where a command prints, and how.
struct Output {
  std::ostream& out;
  std::ostream& err;
  bool colour = false;
};

/// Runs the command that the options name. What it prints is complete when it is printed. Throws HostError.
void runCommand(const Options& options, Session& session, const Output& output);

/// A command that needs libraries that no other does.
using Service = int (*)(const Options& options, const Output& output);

/// The whole program: status 0, 1 after an error, which is one line on `err`, 2 after a wrong command line.
int runZebcim(int argc, const char* const* argv, std::ostream& out, std::ostream& err, bool colour,
              Service serve);

}  // namespace ZebHost
