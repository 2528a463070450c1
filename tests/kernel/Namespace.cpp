#include "Namespace.h"

#include <sched.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <memory>
#include <thread>

#include "support/TestFolder.h"

namespace ZEB::test {

namespace {

/// The addresses that the kernel makes by itself are there at once, and nothing of them is announced later.
void hurryOwnAddresses() {
  for (const char* setting : {"accept_dad", "dad_transmits", "router_solicitations"})
    std::ofstream(std::string("/proc/sys/net/ipv6/conf/default/") + setting) << 0;
}

}  // namespace

bool inNamespace(const std::function<void()>& body) {
  bool made = false;
  std::thread([&] {
    made = unshare(CLONE_NEWNET) == 0;
    if (!made) return;
    hurryOwnAddresses();
    body();
  }).join();
  return made;
}

void ip(const std::string& arguments) {
  EXPECT_EQ(std::system(("ip " + arguments).c_str()), 0) << arguments;
}

void ipBatch(const std::string& commands) {
  const TestFolder folder;
  ip("-batch " + folder.write("batch", commands));
}

nlohmann::json ipJson(const std::string& arguments) {
  const std::unique_ptr<FILE, int (*)(FILE*)> pipe(popen(("ip -j " + arguments).c_str(), "r"), pclose);
  std::string text;
  std::array<char, 4096> part;
  while (const std::size_t size = fread(part.data(), 1, part.size(), pipe.get()))
    text.append(part.data(), size);
  return nlohmann::json::parse(text, nullptr, false);
}

void makePairs(int count) {
  std::string commands;
  for (int i = 0; i < count; ++i) {
    const std::string n = std::to_string(i);
    commands += "link add a" + n + " type veth peer name b" + n + "\n";
    commands += "link set a" + n + " up\nlink set b" + n + " up\n";
  }
  ipBatch(commands);
}

bool eventually(const std::function<bool()>& condition, std::chrono::seconds patience) {
  const auto deadline = std::chrono::steady_clock::now() + patience;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > deadline) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  return true;
}

}  // namespace ZEB::test
