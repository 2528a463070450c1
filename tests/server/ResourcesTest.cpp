// What is served by GET: fixed bytes, bytes made on demand, and bytes that come while the client reads.
#include <gmock/gmock.h>
#include <sys/eventfd.h>
#include <sys/socket.h>

#include <atomic>
#include <chrono>
#include <thread>

#include "Server.h"
#include "server/HttpServer.h"

namespace ZebManager {
namespace {

using testing::AllOf;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

/// Sends what the test says.
class Pipe : public ByteStream {
 public:
  explicit Pipe(std::atomic<int>& open) : _open(open) { ++_open; }
  ~Pipe() override { --_open; }

  void add(const std::string& bytes, bool last = false) {
    const std::lock_guard lock(_mutex);
    _bytes += bytes;
    _last = last;
    eventfd_write(_ready.get(), 1);
  }
  int ready() const override { return _ready.get(); }
  bool takeInto(std::string& bytes) override {
    const std::lock_guard lock(_mutex);
    eventfd_t ignored = 0;
    eventfd_read(_ready.get(), &ignored);
    bytes += std::exchange(_bytes, {});
    return !_last;
  }
  std::string_view heartbeat() const override { return ":\n"; }

 private:
  std::atomic<int>& _open;
  const ZEB::FileDescriptor _ready{eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK)};
  std::mutex _mutex;
  std::string _bytes;
  bool _last = false;
};

std::string asked(const std::string& method, const std::string& path, const std::string& more = {}) {
  return method + " " + path + " HTTP/1.1\r\nHost: localhost\r\nConnection: close\r\n" + more + "\r\n";
}

/// A server without a plug-in, whose connections are of this process.
class ResourcesTest : public testing::Test {
 protected:
  ServerSettings settings;
  std::atomic<int> open = 0;
  std::mutex mutex;
  std::vector<std::weak_ptr<Pipe>> pipes;
  ClassRepository classes;
  Authenticator users{{"/bin/false"}, [](const std::string&) {}};
  ProviderSupervisor plugin{{.process = {"/bin/false"}, .log = {}}, [](const auto&, const auto&) {}};
  Router router{users, plugin, classes, nullptr, settings, resources()};
  HttpBounds bounds{settings};
  std::optional<HttpServer> server{std::in_place, listenAt("127.0.0.1:0"), router, bounds, std::nullopt};

  Resources resources() {
    return {{"/", fixedBytes("<p>", "text/html")},
            {"/made",
             [](const HttpHead& head) {
               return HttpAnswer{200, "for " + head.header("Accept"), {{"Content-Type", "text/plain"}}};
             }},
            {"/long",
             [](const HttpHead&) {
               return HttpAnswer{200, std::string(5000, 'x'), {{"Content-Type", "text/plain"}}};
             }},
            {"/broken", [](const HttpHead&) -> HttpAnswer { throw std::runtime_error("broken"); }},
            {"/events", [this](const HttpHead&) {
               const auto made = std::make_shared<Pipe>(open);
               const std::lock_guard lock(mutex);
               pipes.push_back(made);
               return HttpAnswer{200, "first\n", {{"Content-Type", "text/event-stream"}}, made};
             }}};
  }

  std::string ask(const std::string& bytes) { return exchange(server->address(), bytes); }

  /// A client that reads on a stream of its own.
  std::shared_ptr<Pipe> pipe(std::size_t number) {
    for (int i = 0; i < 3000; ++i) {
      {
        const std::lock_guard lock(mutex);
        if (pipes.size() > number) return pipes[number].lock();
      }
      std::this_thread::sleep_for(std::chrono::milliseconds(10));
    }
    return nullptr;
  }

  bool allAreGone() {
    for (int i = 0; open != 0 && i < 1000; ++i) std::this_thread::sleep_for(std::chrono::milliseconds(10));
    return open == 0;
  }
};

TEST_F(ResourcesTest, FixedBytesAndBytesMadeOnDemandAreServed) {
  const std::string page = ask(asked("GET", "/"));
  EXPECT_THAT(page,
              AllOf(StartsWith("HTTP/1.1 200 "), HasSubstr("Content-Type: text/html"), EndsWith("<p>")));
  EXPECT_THAT(ask(asked("GET", "/made?x=1", "Accept: a/b\r\n")), EndsWith("\r\n\r\nfor a/b"));
  EXPECT_THAT(ask(asked("GET", "/broken")), StartsWith("HTTP/1.1 500 "));
}

TEST_F(ResourcesTest, BytesAreCompressedForWhoAsks) {
  const std::string compressed = ask(asked("GET", "/long", "Accept-Encoding: gzip\r\n"));
  EXPECT_THAT(compressed, AllOf(StartsWith("HTTP/1.1 200 "), HasSubstr("Content-Encoding: gzip\r\n"),
                                HasSubstr("Vary: Accept-Encoding\r\n")));
  EXPECT_LT(compressed.size(), 1000U);
  EXPECT_THAT(ask(asked("GET", "/long")), EndsWith("\r\n\r\n" + std::string(5000, 'x')));
}

TEST_F(ResourcesTest, HeadIsAnsweredWithoutABody) {
  EXPECT_THAT(ask(asked("HEAD", "/")),
              AllOf(StartsWith("HTTP/1.1 200 "), HasSubstr("Content-Length: 3"), EndsWith("\r\n\r\n")));
  EXPECT_THAT(ask(asked("HEAD", "/events")), AllOf(StartsWith("HTTP/1.1 200 "), EndsWith("\r\n\r\n")));
  EXPECT_TRUE(allAreGone());
}

TEST_F(ResourcesTest, OtherPathsAndMethodsAreRefused) {
  EXPECT_THAT(ask(asked("GET", "/other")), StartsWith("HTTP/1.1 404 "));
  EXPECT_THAT(ask(asked("GET", "/made/")), StartsWith("HTTP/1.1 404 "));
  EXPECT_THAT(ask(asked("GET", "/cimom")),
              AllOf(StartsWith("HTTP/1.1 405 "), HasSubstr("Allow: POST, M-POST\r\n")));
  EXPECT_THAT(ask(asked("DELETE", "/made")),
              AllOf(StartsWith("HTTP/1.1 405 "), HasSubstr("Allow: GET, HEAD\r\n")));
  EXPECT_THAT(ask(asked("POST", "/made")),
              AllOf(StartsWith("HTTP/1.1 405 "), HasSubstr("Allow: GET, HEAD\r\n")));
  EXPECT_THAT(ask(asked("DELETE", "/")), HasSubstr("Allow: GET, HEAD, POST, M-POST\r\n"));
  EXPECT_THAT(ask(asked("DELETE", "/other")), HasSubstr("Allow: POST, M-POST\r\n"));
  EXPECT_THAT(ask(asked("POST", "/")), StartsWith("HTTP/1.1 415 "));
  EXPECT_THAT(ask(asked("GET", "/made", "Content-Length: 2\r\n") + "ab"), StartsWith("HTTP/1.1 413 "));
}

TEST_F(ResourcesTest, TheRulesForCimHoldForThemToo) {
  EXPECT_THAT(ask("GET /made HTTP/1.1\r\nHost: example.com\r\nConnection: close\r\n\r\n"),
              StartsWith("HTTP/1.1 421 "));
  // There is nobody to judge them.
  EXPECT_THAT(ask(asked("GET", "/made", "Authorization: Basic eDp5\r\n")), StartsWith("HTTP/1.1 503 "));
}

TEST_F(ResourcesTest, AStreamGivesBytesAsTheyComeUntilItEnds) {
  const OpenConnection client(server->address(), asked("GET", "/events"));
  const auto stream = pipe(0);
  ASSERT_TRUE(stream);
  stream->add("second\n");
  std::string got;
  std::array<char, 4096> buffer{};
  while (got.find("second") == std::string::npos) {
    const ssize_t count = recv(client.socket(), buffer.data(), buffer.size(), 0);
    ASSERT_GT(count, 0);
    got.append(buffer.data(), static_cast<std::size_t>(count));
  }
  EXPECT_THAT(got, AllOf(StartsWith("HTTP/1.1 200 "), HasSubstr("first\n")));
  stream->add("third\n", true);
  EXPECT_THAT(client.receiveAll(), AllOf(HasSubstr("third\n"), EndsWith("0\r\n\r\n")));
}

TEST_F(ResourcesTest, AStreamEndsWithItsClientAndWithTheServer) {
  {
    const OpenConnection client(server->address(), asked("GET", "/events"));
    ASSERT_TRUE(pipe(0));
  }
  EXPECT_TRUE(allAreGone());
  const OpenConnection client(server->address(), asked("GET", "/events"));
  ASSERT_TRUE(pipe(1));
  server.reset();
  EXPECT_TRUE(allAreGone());
}

/// Half of the nameless' half stays free for what has an end: 64 pages of this machine may be open.
TEST_F(ResourcesTest, StreamsAreBounded) {
  constexpr std::size_t kForTheNameless = 64;
  std::vector<std::unique_ptr<OpenConnection>> clients;
  for (std::size_t i = 0; i < kForTheNameless; ++i) {
    clients.push_back(std::make_unique<OpenConnection>(server->address(), asked("GET", "/events")));
    ASSERT_TRUE(pipe(i));
  }
  EXPECT_THAT(ask(asked("GET", "/events")), AllOf(StartsWith("HTTP/1.1 503 "), HasSubstr("Retry-After: ")));
  EXPECT_THAT(ask(asked("GET", "/made")), StartsWith("HTTP/1.1 200 "));
}

}  // namespace
}  // namespace ZebManager
