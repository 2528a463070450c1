#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>

#include "kernel/IoctlDecoders.h"
#include "kernel/Listener.h"
#include "model/LinkStatus.h"
#include "model/PortType.h"
#include "netlink/EthtoolDecoders.h"
#include "netlink/ReplyReader.h"

using namespace ZEB::ethernet;

/// The bytes as a datagram of the kernel's, each message of it as an answer to every question; and as
/// what an ioctl fills.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Bytes datagram(reinterpret_cast<const std::byte*>(data), size);
  std::uint32_t sequence = 0;
  if (size >= 12) std::memcpy(&sequence, data + 8, sizeof sequence);
  LinkFacts link;
  ReplyReader reader(sequence, [&](std::uint16_t, Bytes payload) {
    for (const EthtoolQuestion& question : ethtoolQuestions()) {
      if (ethtoolInterface(question, payload) == 0u) std::abort();
      mergeEthtool(question, payload, link.ethtool);
    }
  });
  (void)reader.feed(datagram);
  (void)ethtoolAnnouncement(datagram);
  mergeLinkSettings(datagram, link.ethtool);
  mergeWakeOnLan(datagram, link.ethtool);
  mergeEnergyEfficiency(datagram, link.ethtool);
  (void)decodePermanentAddress(datagram);
  link.flags = 1;
  (void)portType(link.ethtool);
  (void)linkMessage(link);
  return 0;
}
