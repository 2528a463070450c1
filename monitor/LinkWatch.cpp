#include "monitor/LinkWatch.h"

#include <sys/socket.h>

#include <vector>

#include "common/ZEBUtil.h"
#include "ethernet/EthernetMRA.h"
#include "ethernet/EthernetTeamMRA.h"

namespace ZEB {

std::atomic<bool> _netlinkEvent{false};

long LinkWatch::handleMessage(int socket) {
  constexpr std::size_t kBufferSize = 65536;
  std::vector<char> buffer(kBufferSize);
  const std::lock_guard lock(mutex);
  // What a message says is not looked at: the refresh asks the kernel how things are.
  const long received = recv(socket, buffer.data(), buffer.size(), 0);
  if (received < 0) return received;
  ++messages;
  _netlinkEvent = true;
  if (ethMRA && ethTeamMRA) {
    ethMRA->updateAll();
    ethTeamMRA->updateAll();
    ZEBUtil::wakeWorker();
  }
  return received;
}

// Waits for a pass to end, which would take the flag away. What comes into the model does so with a link
// message, and under the mutex: either it is there already, or that message is still to come and finds what
// was announced here.
void LinkWatch::handleChange(const LayerChange& change) {
  const std::lock_guard lock(mutex);
  if (!ethMRA || ethMRA->concernedBy(change)) lookAgain();
}

void LinkWatch::lookAgain() {
  _netlinkEvent = true;
  ZEBUtil::wakeWorker();
}

void LinkWatch::lookAgainAt(std::chrono::steady_clock::time_point when) {
  nextLook = when;
  ZEBUtil::wakeWorkerAt(when);
}

bool LinkWatch::lookAgainIsDue() const {
  return nextLook && *nextLook <= std::chrono::steady_clock::now();
}

bool LinkWatch::followRecording() {
  const std::lock_guard lock(mutex);
  if (!ethMRA || !ethTeamMRA || !ethMRA->announced()) return true;
  if (ethMRA->updateAll() != 0) return false;
  ethTeamMRA->updateAll();
  ++messages;
  lookAgain();
  return true;
}

}  // namespace ZEB
