#include "cli/Recording.h"

#include "cli/ProgramOutput.h"
#include "values/FileText.h"

namespace ZebManager {

std::string recordingOf(const Options& options) {
  return options.source.empty() ? outputOf("zeb-capture", {"-"}) : textOfFile(options.source);
}

}  // namespace ZebManager
