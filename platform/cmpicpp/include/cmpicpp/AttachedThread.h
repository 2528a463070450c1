#pragma once

#include <functional>

#include "cmpicpp/CmpiBroker.h"

namespace CmpiCpp {

/// The calling thread's way to the object manager, for as long as this lives: it works in pieces, and what
/// the object manager makes in a piece is freed with the piece. Where there are mark and release, the thread
/// stays attached and each piece stands between them; elsewhere only detaching frees anything, so that every
/// piece has an attachment of its own, whose context is prepared from the one before.
class AttachedThread {
 public:
  /// Attaches with a context that was prepared in the factory call.
  AttachedThread(const CmpiBroker& broker, CMPIContext* prepared);
  ~AttachedThread();
  AttachedThread(const AttachedThread&) = delete;
  AttachedThread& operator=(const AttachedThread&) = delete;

  /// Runs `work`, which does not throw, with the context that its calls up are to be made with. False, and
  /// nothing is run, when the object manager refuses to attach the thread.
  bool run(const std::function<void(const CmpiContext&)>& work);

 private:
  bool attach();
  void detach();

  const CMPIBroker* _broker;
  CMPIContext* _context;  ///< attached with, or prepared for the next attachment
  bool _attached = false;
};

}  // namespace CmpiCpp
