#include "AlertWatch.h"

#include <nlohmann/json.hpp>
#include <sstream>

#include "GuestError.h"
#include "support/PropertyJson.h"

namespace ZEB::guest {
namespace {

using nlohmann::json;

/// In the guest. The run folder is the watch's own: other commands post there too.
const std::string kCommand = "ZEB_STORE_DIR=/tmp/watched ZEB_RUN_DIR=/tmp/watch/run " ZEBCIM " ";

/// Counted is what the thread has received when a pass ends, and none is received under a pass. So the second
/// count that is higher than the one before belongs to a pass that began here. The size of frames is none of
/// the plug-in's events.
constexpr std::string_view kAwaitPass = R"sh(
messages() {
  local health
  [ -e /tmp/watch/run/health.json ] && health=$(</tmp/watch/run/health.json)
  [[ $health =~ \"linkMessages\":\ *([0-9]+) ]] && count=${BASH_REMATCH[1]} || count=0
}
for mtu in 1400 1500; do
  messages
  before=$count
  ip link set virtio mtu $mtu
  until messages; [ $count -gt $before ]; do
    [ $SECONDS -lt 40 ] || exit 1
    sleep 0.02
  done
done
)sh";

std::string textOf(const json& indication, std::string_view name) {
  const json value = test::propertyOf(indication.at("properties"), name);
  if (value.is_null()) return "";
  return value.is_string() ? value.get<std::string>() : value.dump();
}

std::string detailOf(const std::string& description) {
  const std::size_t open = description.rfind('(');
  if (open == std::string::npos || !description.ends_with(')')) return "";
  return description.substr(open + 1, description.size() - open - 2);
}

Alert alertOf(const json& indication) {
  return {.event = textOf(indication, "EventID"),
          .element = textOf(indication, "AlertingManagedElement"),
          .subCategory = textOf(indication, "EventSubCategory"),
          .detail = detailOf(textOf(indication, "Description")),
          .place = textOf(indication, "HWPhysicalLocation"),
          .partNumber = textOf(indication, "HWPartNumber"),
          .comment = textOf(indication, "UserComment")};
}

}  // namespace

void PrintTo(const Alert& alert, std::ostream* stream) {
  *stream << alert.event << " of " << alert.element << " (" << alert.subCategory << "): \"" << alert.detail
          << "\" at \"" << alert.place << "\", part \"" << alert.partNumber << "\", \"" << alert.comment
          << '"';
}

AlertWatch::AlertWatch(Guest& guest) : guest_(guest) {
  guest_.must("rm -rf /tmp/watched /tmp/watch; mkdir -p /tmp/watched /tmp/watch/run");
}

AlertWatch::~AlertWatch() {
  if (!started_) return;
  try {
    guest_.run("read -r pid </tmp/watch/pid; kill $pid; while [ -e /proc/$pid/exe ]; do sleep 0.02; done");
  } catch (const GuestError&) {
    // It goes with the guest.
  }
}

void AlertWatch::configure(const std::string& assignments) {
  guest_.must(kCommand + "modify 'ZEB_EthEventSettings.InstanceId=\"JXV:0\"' " + assignments);
}

void AlertWatch::exclude(int portNumber) {
  const std::string port = "JXV:ZEB_EthernetPort:" + std::to_string(portNumber);
  for (const json& member :
       json::parse(guest_.must(kCommand + "instances ZEB_EthernetMemberOfCollection --json"))) {
    const std::string path = member.at("path");
    if (path.find(port + "\\") == std::string::npos) continue;
    guest_.must(kCommand + "modify '" + path + "' Included=false");
    return;
  }
  throw GuestError(port + " is no member of the collection");
}

void AlertWatch::start() {
  started_ = true;
  guest_.must(
      "setsid env " + kCommand +
      "watch --json=typed </dev/null >/tmp/watch/alerts 2>/tmp/watch/said &\necho $! >/tmp/watch/pid");
  if (!guest_.await("grep -q watching /tmp/watch/said")) {
    throw GuestError("nothing is watched: " + guest_.run("cat /tmp/watch/said").output);
  }
}

std::vector<Alert> AlertWatch::next(std::size_t expected) {
  const std::string all = std::to_string(seen_ + expected), fresh = std::to_string(seen_);
  // One script, with no process for what the shell can do.
  std::istringstream lines(
      guest_.must("until mapfile lines </tmp/watch/alerts; [ ${#lines[@]} -ge " + all +
                      " ] || [ $SECONDS -ge 15 ]; do sleep 0.05; done" + std::string(kAwaitPass) +
                      "mapfile lines </tmp/watch/alerts; printf %s \"${lines[@]:" + fresh + "}\"",
                  std::chrono::seconds(60)));
  std::vector<Alert> alerts;
  for (std::string line; std::getline(lines, line);) alerts.push_back(alertOf(json::parse(line)));
  seen_ += alerts.size();
  return alerts;
}

}  // namespace ZEB::guest
