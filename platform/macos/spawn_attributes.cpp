#include "platform/posix/spawn_attributes.h"

namespace wendle {

// Only the descriptors that the actions name survive (posix_spawnattr_setflags(3)).
void inheritStandardStreamsOnly(SpawnAttributes& /*spawn*/, short& flags) {
  flags = static_cast<short>(flags | POSIX_SPAWN_CLOEXEC_DEFAULT);
}

}  // namespace wendle
