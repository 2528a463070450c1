#include "GuestListener.h"

#include <thread>

#include "Deadline.h"
#include "GuestError.h"
#include "support/Content.h"

namespace ZEB::guest {

using namespace std::chrono_literals;

GuestListener::GuestListener(Guest& guest, const std::string& name, int port)
    : guest_(guest), inGuest_("/results/" + name), folder_(guest.results() / name), port_(port) {
  std::filesystem::create_directory(folder_);
  guest_.must("setsid " GUEST_LISTENER " " + std::to_string(port_) + " " + inGuest_ + " </dev/null >" +
              inGuest_ + "/said 2>&1 &\necho $! >" + inGuest_ + "/pid");
  if (!guest_.await("[ -e " + inGuest_ + "/listens ]")) throw GuestError("nobody listens as " + name);
}

GuestListener::~GuestListener() {
  try {
    guest_.run("read -r pid <" + inGuest_ +
               "/pid; kill $pid; while [ -e /proc/$pid/exe ]; do sleep 0.02; done");
  } catch (const GuestError&) {
    // It goes with the guest.
  }
}

bool GuestListener::waitFor(std::size_t count) const {
  const Deadline deadline(60s);
  while (!std::filesystem::exists(folder_ / std::to_string(count - 1))) {
    if (deadline.passed()) return false;
    std::this_thread::sleep_for(20ms);
  }
  return true;
}

std::vector<ZebManager::ReceivedExport> GuestListener::received() const {
  std::vector<ZebManager::ReceivedExport> exports;
  while (true) {
    const auto file = folder_ / std::to_string(exports.size());
    if (!std::filesystem::exists(file)) return exports;
    exports.push_back(ZebManager::readExport(test::contentOf(file)));
  }
}

}  // namespace ZEB::guest
