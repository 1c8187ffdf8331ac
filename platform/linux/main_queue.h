#pragma once

#include <functional>

namespace wendle {

// Serves the main queue on the calling thread, waiting for work as long as it takes, until `isDone` holds
// after a piece of work. On macOS the main run loop does this.
void serveMainQueueUntil(const std::function<bool()>& isDone);

}  // namespace wendle
