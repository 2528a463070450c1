#pragma once

namespace ZEB::guest {

/// What the guest's kernel hands over to.
enum class FirstProgram {
  Agent,    ///< nothing runs but the scripts: quick to start
  Systemd,  ///< with journald and the agent as its only units
};

}  // namespace ZEB::guest
