#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "kernel/Listener.h"
#include "model/Model.h"
#include "netlink/FamilyDecoder.h"
#include "netlink/ReplyReader.h"
#include "netlink/RtnlDecoders.h"

using namespace ZEB::ethernet;

/// The bytes as a datagram of the kernel's: as an answer, as announcements, and each message as every kind.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const Bytes datagram(reinterpret_cast<const std::byte*>(data), size);
  std::uint32_t sequence = 0;
  if (size >= 12) std::memcpy(&sequence, data + 8, sizeof sequence);
  HostSnapshot snapshot;
  ReplyReader reader(sequence, [&](std::uint16_t type, Bytes payload) {
    (void)isRelevant(type, payload);
    (void)decodeFamily(payload, "monitor");
    if (auto link = decodeLink(payload)) snapshot.links.push_back(*link);
    if (auto address = decodeAddress(payload)) snapshot.addresses.push_back(*address);
    for (const RouteFacts& route : decodeDefaultRoute(payload)) snapshot.routes.push_back(route);
    if (const auto rule = decodeRule(payload)) snapshot.rules.push_back(*rule);
  });
  (void)reader.feed(datagram);
  (void)routingAnnouncement(datagram);
  const auto model = buildModel(std::move(snapshot), true);
  for (const auto& adapter : model->adapters) {
    if (adapter.ports.empty()) std::abort();
  }
  return 0;
}
