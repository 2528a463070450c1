#pragma once

#include <string>
#include <vector>

namespace ZEB {

/// Words as execve(2) takes arguments and variables. They refer to `words`.
inline std::vector<char*> argumentsOf(std::vector<std::string>& words) {
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace ZEB
