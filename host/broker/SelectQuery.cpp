#include "broker/SelectQuery.h"

namespace ZebHost {
namespace {

constexpr std::string_view kBlanks = " \t\r\n";

std::string_view takeWord(std::string_view& rest) {
  rest.remove_prefix(std::min(rest.find_first_not_of(kBlanks), rest.size()));
  const std::size_t length = std::min(rest.find_first_of(kBlanks), rest.size());
  const std::string_view word = rest.substr(0, length);
  rest.remove_prefix(length);
  return word;
}

}  // namespace

std::optional<SelectQuery> parseSelect(std::string_view query) {
  if (!sameName(takeWord(query), "select")) return std::nullopt;
  std::string_view word = takeWord(query);
  if (word.empty() || sameName(word, "from")) return std::nullopt;
  while (!word.empty() && !sameName(word, "from")) word = takeWord(query);
  SelectQuery select;
  select.className = takeWord(query);
  word = takeWord(query);
  select.hasCondition = sameName(word, "where");
  if (select.className.empty() || (!word.empty() && !select.hasCondition)) return std::nullopt;
  if (select.hasCondition && takeWord(query).empty()) return std::nullopt;
  return select;
}

SelectExp* makeSelectExp(Arena& arena, const ClassRepository& repository, std::string_view query) {
  const auto select = parseSelect(query);
  if (!select) return nullptr;
  return makeHandle<SelectExp>(
      arena, arena.make<SelectExpBody>(arena.copy(query), arena.copy(select->className), select->hasCondition,
                                       &repository));
}

}  // namespace ZebHost
