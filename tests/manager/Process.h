// Running a program to its end.
#pragma once

#include <string>
#include <vector>

namespace ZebManager {

struct Outcome {
  int status = -1;  ///< exit status; -1 when a signal ended the program
  std::string out;
  std::string err;
};

/// A signal that the program gets once it has said something on standard error.
struct SignalAfter {
  std::string text;
  int signal = 0;
};

/// Runs the program with arguments and extra environment (NAME=value). Ends it when it takes too long.
Outcome run(const std::string& program, const std::vector<std::string>& arguments,
            const std::vector<std::string>& environment = {}, const SignalAfter& after = {});

}  // namespace ZebManager
