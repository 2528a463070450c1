// Many clients at once.
#include <gmock/gmock.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <iostream>
#include <mutex>
#include <thread>

#include "Server.h"
#include "support/Length.h"

namespace ZebManager {
namespace {

constexpr int kClients = 64;
constexpr std::size_t kGrowth = 64U << 20;

TEST(CrowdTest, SixtyFourClientsAreAllAnswered) {
  using Clock = std::chrono::steady_clock;
  Server server({"--source", ZEB_SNAPSHOTS "/two_cards.json"});
  const std::string request =
      post(call("EnumerateInstances",
                "<IPARAMVALUE NAME=\"ClassName\"><CLASSNAME NAME=\"ZEB_EthernetPort\"/></IPARAMVALUE>"),
           "EnumerateInstances");
  ASSERT_THAT(exchange(server.http(), request), testing::StartsWith("HTTP/1.1 200 "));
  const auto end = Clock::now() + std::chrono::seconds(ZEB::test::length(5, 60));
  std::mutex mutex;
  std::vector<double> times;
  std::atomic<int> wrong = 0;
  std::atomic<std::size_t> before = 0;
  std::vector<std::thread> clients;
  for (int i = 0; i < kClients; ++i) {
    clients.emplace_back([&] {
      while (Clock::now() < end) {
        const auto begin = Clock::now();
        const std::string answer = exchange(server.http(), request, 60);
        const double took = std::chrono::duration<double, std::milli>(Clock::now() - begin).count();
        if (!answer.starts_with("HTTP/1.1 200 ") || !answer.ends_with("</CIM>\n") ||
            answer.find("<ERROR") != std::string::npos) {
          ++wrong;
        }
        const std::lock_guard lock(mutex);
        times.push_back(took);
        if (times.size() == 2 * kClients) before = server.memory();
      }
    });
  }
  for (std::thread& client : clients) client.join();
  EXPECT_EQ(wrong, 0);
  ASSERT_GT(times.size(), 2U * kClients);
  EXPECT_LT(server.memory(), before + kGrowth);
  std::sort(times.begin(), times.end());
  std::cout << times.size() << " requests, median " << times[times.size() / 2] << " ms, 99th percentile "
            << times[times.size() * 99 / 100] << " ms, memory " << server.memory() / 1024 << " KiB\n";
  EXPECT_EQ(server.stop(), 0);
}

}  // namespace
}  // namespace ZebManager
