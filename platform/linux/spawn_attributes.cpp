#include "platform/posix/spawn_attributes.h"

namespace wendle {

// glibc 2.34 and later; closes in the child, after the other actions.
void inheritStandardStreamsOnly(SpawnAttributes& spawn, short& /*flags*/) {
  ::posix_spawn_file_actions_addclosefrom_np(&spawn.actions, 3);
}

}  // namespace wendle
