#pragma once

#include <spawn.h>

namespace wendle {

// The two halves of what posix_spawn is told, released together.
struct SpawnAttributes {
  SpawnAttributes() {
    ::posix_spawnattr_init(&attributes);
    ::posix_spawn_file_actions_init(&actions);
  }
  SpawnAttributes(const SpawnAttributes&) = delete;
  SpawnAttributes& operator=(const SpawnAttributes&) = delete;
  ~SpawnAttributes() {
    ::posix_spawn_file_actions_destroy(&actions);
    ::posix_spawnattr_destroy(&attributes);
  }

  posix_spawnattr_t attributes{};
  posix_spawn_file_actions_t actions{};
};

// Sees to it that the child gets no descriptor above 2, whatever our own launcher left open in us. Called
// once, after all `actions` are listed; `flags` are the attribute flags that will be set. Systems do it in
// different ways.
void inheritStandardStreamsOnly(SpawnAttributes& spawn, short& flags);

}  // namespace wendle
