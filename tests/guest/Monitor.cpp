#include "Monitor.h"

#include <nlohmann/json.hpp>

#include "GuestError.h"

namespace ZEB::guest {
namespace {

using nlohmann::json;
using namespace std::chrono_literals;

/// The device that a removal event names, else nothing.
std::string removedDevice(const json& message) {
  if (message.value("event", "") != "DEVICE_DELETED") return "";
  return message.at("data").value("device", "");
}

}  // namespace

Monitor::Monitor(const std::filesystem::path& socket, const Deadline& deadline)
    : connection_(socket, deadline) {
  connection_.readLine(deadline);  // The greeting.
  connection_.send(R"({"execute":"qmp_capabilities"})", deadline);
  nextReply(deadline);
}

std::string Monitor::nextReply(const Deadline& deadline) {
  while (true) {
    std::string line = connection_.readLine(deadline);
    const json message = json::parse(line);
    if (!message.contains("event")) return line;
    removed_.insert(removedDevice(message));
  }
}

void Monitor::command(std::string_view line) {
  const Deadline deadline(20s);
  const json request = {{"execute", "human-monitor-command"}, {"arguments", {{"command-line", line}}}};
  connection_.send(request.dump(), deadline);
  const json reply = json::parse(nextReply(deadline));
  const std::string refusal = reply.contains("return") ? reply["return"].get<std::string>() : reply.dump();
  if (!refusal.empty()) throw GuestError(std::string(line) + ": " + refusal);
}

void Monitor::awaitRemoval(const std::string& device, const Deadline& deadline) {
  while (removed_.erase(device) == 0)
    removed_.insert(removedDevice(json::parse(connection_.readLine(deadline))));
}

}  // namespace ZEB::guest
