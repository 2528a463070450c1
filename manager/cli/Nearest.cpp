#include "cli/Nearest.h"

#include <algorithm>

#include "schema/Caseless.h"

namespace ZebManager {
namespace {

/// Characters that have to be changed, put in or left out.
std::size_t distance(std::string_view one, std::string_view other) {
  std::vector<std::size_t> row(other.size() + 1);
  for (std::size_t i = 0; i < row.size(); ++i) row[i] = i;
  for (std::size_t i = 0; i < one.size(); ++i) {
    std::size_t diagonal = row[0];
    row[0] = i + 1;
    for (std::size_t j = 0; j < other.size(); ++j) {
      const std::size_t changed = diagonal + (foldCase(one[i]) == foldCase(other[j]) ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({changed, row[j] + 1, diagonal + 1});
    }
  }
  return row.back();
}

}  // namespace

std::string suggestion(std::string_view word, const std::vector<std::string>& known) {
  constexpr std::size_t kLongestWord = 100;
  if (word.size() > kLongestWord) return {};
  std::size_t least = std::max<std::size_t>(1, (word.size() + 1) / 3) + 1;
  std::string nearest;
  for (const std::string& other : known) {
    const std::size_t apart = distance(word, other);
    if (apart >= least) continue;
    least = apart;
    nearest = other;
  }
  return nearest.empty() ? nearest : "; did you mean '" + nearest + "'?";
}

std::string listed(const std::vector<std::string>& words) {
  constexpr std::size_t kMost = 20;
  std::string list;
  for (std::size_t i = 0; i < std::min(words.size(), kMost); ++i) list += (i == 0 ? "" : ", ") + words[i];
  return words.size() > kMost ? list + " and " + std::to_string(words.size() - kMost) + " more" : list;
}

}  // namespace ZebManager
