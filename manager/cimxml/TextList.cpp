#include "cimxml/TextList.h"

#include <algorithm>
#include <charconv>

namespace ZebManager {
namespace {

/// Of all texts together no list makes more than an answer may have.
constexpr std::uint64_t kLongestText = std::uint64_t{1} << 28;
constexpr unsigned kNumberBits = 7;
constexpr unsigned char kMore = 0x80;

void appendPacked(std::string& out, std::uint64_t number) {
  for (; number >= kMore; number >>= kNumberBits) out += static_cast<char>(kMore | (number & (kMore - 1)));
  out += static_cast<char>(number);
}

}  // namespace

void TextList::append(std::string_view text) {
  const std::size_t most = std::min(text.size(), _last.size());
  const auto begin = static_cast<std::size_t>(
      std::mismatch(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(most), _last.begin()).first -
      text.begin());
  std::size_t end = 0;
  while (end < most - begin && text[text.size() - 1 - end] == _last[_last.size() - 1 - end]) ++end;
  const std::string_view own = text.substr(begin, text.size() - begin - end);
  for (const std::uint64_t number : {begin, end, own.size()}) appendPacked(_bytes, number);
  _bytes.append(own);
  _last = text;
  ++_count;
}

std::uint64_t TextListReader::takeNumber() {
  std::uint64_t number = 0;
  for (unsigned shift = 0; shift < 5 * kNumberBits; shift += kNumberBits) {
    if (_rest.empty()) break;
    const auto byte = static_cast<unsigned char>(_rest.front());
    _rest.remove_prefix(1);
    number |= static_cast<std::uint64_t>(byte & (kMore - 1)) << shift;
    if (!(byte & kMore)) return number;
  }
  throw TextListError("a list of texts that was cut off");
}

const std::string& TextListReader::next() {
  const std::uint64_t begin = takeNumber();
  const std::uint64_t end = takeNumber();
  const std::uint64_t own = takeNumber();
  if (begin + end > _text.size() || own > _rest.size() || begin + own + end > kLongestText) {
    throw TextListError("a list of texts that does not fit together");
  }
  _text.replace(begin, _text.size() - begin - end, _rest.substr(0, own));
  _rest.remove_prefix(own);
  return _text;
}

std::uint64_t TextListReader::nextNumber() {
  const std::string& text = next();
  std::uint64_t number = 0;
  const auto [stop, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error != std::errc{} || stop != text.data() + text.size()) throw TextListError("a number is expected");
  return number;
}

}  // namespace ZebManager
