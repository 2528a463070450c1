// The commands of zebcim.
#pragma once

#include <iosfwd>
#include <string>

#include "cli/Options.h"
#include "cli/Session.h"

namespace ZebManager {

/// Where a command prints, and how.
struct Output {
  std::ostream& out;
  std::ostream& err;
  bool colour = false;
  std::size_t width = 0;  ///< columns of the terminal; 0: it is none
};

/// The instance that the options name. Throws ManagerError.
ObjectPath& pathOf(const Options& options, Session& session, Arena& arena);

/// Runs the command that the options name. What it prints is complete when it is printed. Throws
/// ManagerError.
void runCommand(const Options& options, Session& session, const Output& output);

/// The whole program: status 0, 1 after an error, which is one line on `err` of the output, 2 after a wrong
/// command line. For what needs libraries that no other command does it becomes another program.
int runZebcim(int argc, const char* const* argv, const Output& output);

}  // namespace ZebManager
