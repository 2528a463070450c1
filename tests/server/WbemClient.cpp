#include "WbemClient.h"

#include <filesystem>

namespace ZebManager {

std::string wbemClient() {
  const std::string path = "/usr/bin/wbemcli";
  return std::filesystem::exists(path) ? path : "";
}

Outcome ask(const Server& server, const std::string& scheme, const Question& question) {
  const bool secure = scheme == "https";
  std::vector<std::string> words = {question.operation, "-nl"};
  if (secure) words.insert(words.end(), {"-cacert", (server.folder() / "state/server.pem").string()});
  words.insert(words.end(), question.options.begin(), question.options.end());
  words.push_back(scheme + "://" + question.user + (secure ? server.https() : server.http()) + "/" +
                  question.object);
  words.insert(words.end(), question.values.begin(), question.values.end());
  return run(wbemClient(), words);
}

}  // namespace ZebManager
