#include "server/Compression.h"

#include <zlib.h>

#include <algorithm>
#include <charconv>

#include "schema/Caseless.h"
#include "values/ManagerError.h"

namespace ZebManager {
namespace {

/// Less is not worth the work.
constexpr std::size_t kShort = 1024;
constexpr int kWindow = 15;
constexpr int kGzip = 16;  // added to the window: with the frame of gzip
constexpr int kMemory = 8;

std::string_view trimmed(std::string_view text) {
  const std::size_t begin = std::min(text.find_first_not_of(" \t"), text.size());
  text.remove_prefix(begin);
  return text.substr(0, text.find_last_not_of(" \t") + 1);
}

/// Takes what stands before a mark, and the mark.
std::string_view takeUntil(std::string_view& text, char mark) {
  const std::size_t end = std::min(text.find(mark), text.size());
  const std::string_view part = trimmed(text.substr(0, end));
  text.remove_prefix(std::min(end + 1, text.size()));
  return part;
}

/// Of "gzip;q=0.5" what stands behind the name; 1 when nothing does.
double weightOf(std::string_view parameters) {
  while (!parameters.empty()) {
    const std::string_view parameter = takeUntil(parameters, ';');
    if (!parameter.starts_with("q=") && !parameter.starts_with("Q=")) continue;
    double weight = 0;
    std::from_chars(parameter.data() + 2, parameter.data() + parameter.size(), weight);
    return weight;
  }
  return 1;
}

}  // namespace

std::string codingOf(std::string_view accepted) {
  double gzip = 0;
  double deflate = 0;
  while (!accepted.empty()) {
    std::string_view entry = takeUntil(accepted, ',');
    const std::string_view name = takeUntil(entry, ';');
    const double weight = weightOf(entry);
    if (sameName(name, "gzip") || sameName(name, "x-gzip")) gzip = weight;
    if (sameName(name, "deflate")) deflate = weight;
  }
  if (gzip > 0 && gzip >= deflate) return "gzip";
  return deflate > 0 ? "deflate" : "";
}

std::string compressed(std::string_view text, const std::string& coding) {
  z_stream stream{};
  const int window = coding == "gzip" ? kWindow + kGzip : kWindow;
  if (deflateInit2(&stream, Z_BEST_SPEED, Z_DEFLATED, window, kMemory, Z_DEFAULT_STRATEGY) != Z_OK)
    throw ManagerError("an answer cannot be compressed");
  std::string out(deflateBound(&stream, text.size()), '\0');
  stream.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(text.data()));
  stream.avail_in = static_cast<uInt>(text.size());
  stream.next_out = reinterpret_cast<Bytef*>(out.data());
  stream.avail_out = static_cast<uInt>(out.size());
  const int result = deflate(&stream, Z_FINISH);
  out.resize(stream.total_out);
  deflateEnd(&stream);
  if (result != Z_STREAM_END) throw ManagerError("an answer cannot be compressed");
  out.shrink_to_fit();
  return out;
}

HttpAnswer compressed(const HttpHead& head, HttpAnswer answer) {
  const bool worthIt = !answer.stream && answer.body.size() >= kShort;
  const std::string coding = worthIt ? codingOf(head.header("Accept-Encoding")) : "";
  if (coding.empty()) return answer;
  answer.body = compressed(answer.body, coding);
  answer.headers.emplace_back("Content-Encoding", coding);
  answer.headers.emplace_back("Vary", "Accept-Encoding");
  return answer;
}

}  // namespace ZebManager
