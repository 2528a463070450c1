// What clients ask to have compressed.
#include <gmock/gmock.h>
#include <zlib.h>

#include "server/ByteStream.h"
#include "server/Compression.h"

namespace ZebManager {
namespace {

TEST(Compression, ClientsChooseTheCoding) {
  EXPECT_EQ(codingOf("gzip"), "gzip");
  EXPECT_EQ(codingOf("GZIP, deflate"), "gzip");
  EXPECT_EQ(codingOf("deflate"), "deflate");
  EXPECT_EQ(codingOf("gzip;q=0.2, deflate;q=0.9"), "deflate");
  EXPECT_EQ(codingOf("gzip ; q=0, deflate"), "deflate");
  EXPECT_EQ(codingOf("br, identity"), "");
  EXPECT_EQ(codingOf("gzip;q=0"), "");
  EXPECT_EQ(codingOf("gzip;q=x"), "");
  EXPECT_EQ(codingOf(""), "");
  EXPECT_EQ(codingOf(",;,=;q"), "");
}

std::string inflated(const std::string& bytes, std::size_t size, int window) {
  std::string text(size, '\0');
  z_stream stream{};
  EXPECT_EQ(inflateInit2(&stream, window), Z_OK);
  stream.next_in = const_cast<Bytef*>(reinterpret_cast<const Bytef*>(bytes.data()));
  stream.avail_in = static_cast<uInt>(bytes.size());
  stream.next_out = reinterpret_cast<Bytef*>(text.data());
  stream.avail_out = static_cast<uInt>(size);
  EXPECT_EQ(inflate(&stream, Z_FINISH), Z_STREAM_END);
  text.resize(stream.total_out);
  inflateEnd(&stream);
  return text;
}

/// gzip has a frame of its own (RFC 1952), deflate is zlib's (RFC 1950).
TEST(Compression, TextComesBackAsItWas) {
  std::string text;
  for (int i = 0; i < 5000; ++i) text += "<VALUE>" + std::to_string(i) + "</VALUE>";
  const std::string gzip = compressed(text, "gzip");
  EXPECT_EQ(gzip.substr(0, 2), "\x1f\x8b");
  EXPECT_LT(gzip.size(), text.size() / 4);
  EXPECT_EQ(inflated(gzip, text.size() + 1, 31), text);
  EXPECT_EQ(inflated(compressed(text, "deflate"), text.size() + 1, 15), text);
  EXPECT_EQ(inflated(compressed("", "gzip"), 1, 31), "");
}

HttpHead asking(const std::string& coding) {
  return {.method = "POST",
          .header = [coding](const std::string& name) { return name == "Accept-Encoding" ? coding : ""; }};
}

TEST(Compression, AnswersSayHowTheyCome) {
  const HttpAnswer answer{200, std::string(5000, 'x'), {}};
  const HttpAnswer asked = compressed(asking("gzip"), answer);
  EXPECT_LT(asked.body.size(), 500U);
  EXPECT_THAT(asked.headers, testing::Contains(testing::Pair("Content-Encoding", "gzip")));
  EXPECT_EQ(compressed(asking(""), answer).body, answer.body);
  EXPECT_TRUE(compressed(asking("gzip"), {200, "short", {}}).headers.empty());
}

/// What comes while it is read has no end that could be compressed.
TEST(Compression, StreamsComeAsTheyAre) {
  struct Endless : ByteStream {
    int ready() const override { return -1; }
    bool takeInto(std::string&) override { return true; }
    std::string_view heartbeat() const override { return ":"; }
  };
  const HttpAnswer stream{200, std::string(5000, 'x'), {}, std::make_shared<Endless>()};
  EXPECT_TRUE(compressed(asking("gzip"), stream).headers.empty());
}

}  // namespace
}  // namespace ZebManager
