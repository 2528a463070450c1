// zebcim with the plug-in and the schema of tests.
#pragma once

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "Process.h"

namespace ZebManager {

using Json = nlohmann::ordered_json;

inline constexpr char kOnePath[] = R"(root/jxv:T_Thing.Name="one \"1\"")";
inline constexpr char kTwoPath[] = R"(root/jxv:T_Special.Name="two")";
inline constexpr char kLinkPath[] =
    R"(//host/root/jxv:T_Link.One="root/jxv:T_Thing.Name=\"one \\\"1\\\"\"",Other="root/jxv:T_Special.Name=\"two\"")";

inline Outcome zebcim(std::vector<std::string> arguments, const std::vector<std::string>& environment = {}) {
  for (const char* word : {"--plugin", ZEB_TEST_PLUGIN, "--schema", ZEB_TEST_SCHEMA})
    arguments.emplace_back(word);
  return run(ZEB_CIM, arguments, environment);
}

/// The JSON, with types, of a command that has to succeed and to print nothing else.
inline Json answer(const std::vector<std::string>& arguments) {
  std::vector<std::string> words = arguments;
  words.emplace_back("--json=typed");
  const Outcome outcome = zebcim(words);
  EXPECT_EQ(outcome.status, 0);
  EXPECT_EQ(outcome.err, "");
  return Json::parse(outcome.out, nullptr, false);
}

/// An error is one line on standard error, nothing on standard output, and status 1.
inline void expectError(const Outcome& outcome, const std::string& line) {
  EXPECT_EQ(outcome.status, 1);
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.err, "zebcim: " + line + "\n");
}

}  // namespace ZebManager
