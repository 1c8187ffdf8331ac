#pragma once

#include <chrono>
#include <functional>

namespace wendle {
// Runs `work` on another thread, at once and beside whatever else is running; returns without waiting. An
// exception out of it ends the process. Source: the global utility queue of libdispatch.
void asyncOnUtilityQueue(std::function<void()> work);

// Runs `work` on the main queue, not before `delay` has passed; returns without waiting. It never runs in a
// program that does not serve its main queue. Source: dispatch_after.
void afterDelayOnMainQueue(std::chrono::nanoseconds delay, std::function<void()> work);

// Serves the main queue on the calling thread, waiting for work as long as it takes, until `isDone` holds
// after a piece of work. On Linux only: on macOS the main run loop does this [D].
void serveMainQueueUntil(const std::function<bool()>& isDone);
}  // namespace wendle
