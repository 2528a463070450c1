#include "cli/Recording.h"

#include <fstream>
#include <sstream>

#include "cli/ProgramOutput.h"

namespace ZebManager {

std::string recordingOf(const Options& options) {
  if (options.source.empty()) return outputOf("zeb-capture", {"-"});
  std::ostringstream text;
  text << std::ifstream(options.source).rdbuf();
  return text.str();
}

}  // namespace ZebManager
