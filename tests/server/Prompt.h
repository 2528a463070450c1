// The fixture of what people type.
#pragma once

#include <gmock/gmock.h>

#include <filesystem>
#include <optional>
#include <sstream>
#include <string>
#include <vector>

#include "Process.h"
#include "Server.h"
#include "Terminal.h"

namespace ZebManager {

inline std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

/// With a service, and without one.
class Prompt : public testing::TestWithParam<bool> {
 protected:
  void serve(const std::string& recording) {
    _recording = recording;
    if (GetParam()) _server.emplace(std::vector<std::string>{"--source", recording});
  }
  std::vector<std::string> environment() const {
    const std::filesystem::path folder = _server ? _server->folder() : _folder.path();
    std::vector<std::string> all = {"ZEB_CONFIG=/dev/null", "ZEB_STORE_DIR=" + (folder / "store").string(),
                                    "ZEB_RUN_DIR=" + (folder / "run").string(), "LC_ALL=C.UTF-8", "TZ=UTC"};
    if (!_server) all.push_back("ZEB_SOURCE_FILE=" + _recording);
    return all;
  }
  Outcome zebcim(const std::vector<std::string>& words) const { return run(ZEB_CIM, words, environment()); }
  Outcome onTerminal(unsigned columns, const std::vector<std::string>& words, const std::string& term) const {
    std::vector<std::string> all = environment();
    all.push_back("TERM=" + term);
    return runOnTerminal(columns, ZEB_CIM, words, all);
  }
  /// The first line, which is the path of what was found.
  std::string found(const std::string& word) const {
    const Outcome outcome = zebcim({"get", word});
    EXPECT_EQ(outcome.status, 0) << word << ": " << outcome.err;
    return outcome.out.substr(0, outcome.out.find('\n'));
  }
  void expectRefusal(const std::vector<std::string>& words, const std::string& part) const {
    const Outcome outcome = zebcim(words);
    EXPECT_EQ(outcome.status, 1);
    EXPECT_EQ(outcome.out, "");
    EXPECT_THAT(outcome.err, testing::HasSubstr(part));
  }

 private:
  const ZEB::TemporaryFolder _folder;
  std::optional<Server> _server;
  std::string _recording;
};

}  // namespace ZebManager
