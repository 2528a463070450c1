#include "isolation/ProviderProcess.h"

#include <fcntl.h>
#include <signal.h>
#include <sys/prctl.h>
#include <unistd.h>

#include "isolation/CallWorkers.h"
#include "isolation/IndicationPump.h"
#include "isolation/Subscriptions.h"
#include "posix/FileDescriptor.h"
#include "values/KeptMemory.h"

namespace ZebManager {
namespace {

/// For what is under way and for unloading the plug-in once the other end has closed: then the process is
/// ended.
constexpr unsigned kFarewellSeconds = 2;

/// Its parent alone decides when the process goes; what stops a whole group of processes stops the parent.
void followParent(int socket) {
  prctl(PR_SET_PDEATHSIG, SIGKILL);
  prctl(PR_SET_NAME, "zebcim-plugin");
  fcntl(socket, F_SETFD, FD_CLOEXEC);
  for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGQUIT, SIGPIPE}) ::signal(signal, SIG_IGN);
}

std::vector<IndicationFilter> filtersOf(const Frame& frame) {
  const std::vector<std::string> texts = unpackTexts(frame.body);
  std::vector<IndicationFilter> filters;
  for (std::size_t i = 0; i + 2 < texts.size(); i += 3) {
    filters.push_back({texts[i], texts[i + 1], texts[i + 2]});
  }
  return filters;
}

/// What the process does with the frames that come.
class Service {
 public:
  Service(HostedProvider& provider, FrameSender& sender, HandoverFile& handover)
      : _sender(sender),
        _pump(provider, sender, handover),
        _subscriptions(provider.broker()),
        _workers(provider, sender) {}
  Service(const Service&) = delete;
  Service& operator=(const Service&) = delete;
  ~Service() { alarm(kFarewellSeconds); }

  void handle(Frame frame) {
    switch (frame.kind) {
      case Frame::Kind::Perform:
        return _workers.add(std::move(frame));
      case Frame::Kind::Filters: {
        const auto filters = filtersOf(frame);
        _pump.setFilters(filters);
        return _subscriptions.set(filters);
      }
      case Frame::Kind::Taken:
        return _pump.taken();
      case Frame::Kind::AskPulse:
        _sender.send({Frame::Kind::Pulse, 0, pack(_workers.pulse(_pump.thread()))});
        return;
      case Frame::Kind::Retire:
        return _pump.retire();
      default:
        throw FrameError("a frame that is not for this end");
    }
  }

 private:
  FrameSender& _sender;
  IndicationPump _pump;
  Subscriptions _subscriptions;
  CallWorkers _workers;
};

/// The next frame; none when the other end has closed.
std::optional<Frame> nextFrame(int socket, FrameReader& reader) {
  auto frame = reader.next();
  while (!frame && reader.receive(socket) == Transfer::Done) frame = reader.next();
  return frame;
}

/// Loads the plug-in once it is known what the process before it has reported.
void serve(int socket, FrameSender& sender, const std::function<std::unique_ptr<HostedProvider>()>& load) {
  FrameReader reader;
  const auto begin = nextFrame(socket, reader);
  if (!begin) return;
  if (begin->kind != Frame::Kind::Begin) throw FrameError("a frame that is not for the beginning");
  HandoverFile handover(begin->body);
  const auto provider = load();
  provider->broker().indications().setReported([&handover] { return handover.takeAll(); });
  Service service(*provider, sender, handover);
  sender.send({Frame::Kind::Ready, 0, {}});
  while (auto frame = nextFrame(socket, reader)) service.handle(std::move(*frame));
}

}  // namespace

int runProviderProcess(int socket, const std::function<std::unique_ptr<HostedProvider>()>& load) {
  const ZEB::FileDescriptor owned(socket);
  followParent(socket);
  keepMemory();
  FrameSender sender(socket);
  try {
    serve(socket, sender, load);
    return 0;
  } catch (const std::exception& error) {
    sender.send({Frame::Kind::Fault, 0, error.what()});
    return 1;
  }
}

}  // namespace ZebManager
