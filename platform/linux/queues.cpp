#include "platform/queues.h"

#include <condition_variable>
#include <map>
#include <mutex>
#include <thread>

namespace wendle {
namespace {
using Clock = std::chrono::steady_clock;

class MainQueue {
 public:
  void add(Clock::time_point due, std::function<void()> work) {
    const std::lock_guard lock(mutex_);
    work_.emplace(due, std::move(work));
    changed_.notify_all();
  }

  // Waits for the first piece of work that is due, and takes it out.
  std::function<void()> take() {
    std::unique_lock lock(mutex_);
    while (work_.empty() || work_.begin()->first > Clock::now()) {
      if (work_.empty()) {
        changed_.wait(lock);
      } else {
        changed_.wait_until(lock, Clock::time_point(work_.begin()->first));
      }
    }
    return std::move(work_.extract(work_.begin()).mapped());
  }

 private:
  std::mutex mutex_;
  std::condition_variable changed_;
  std::multimap<Clock::time_point, std::function<void()>> work_;
};

MainQueue& mainQueue() {
  static auto* const queue = new MainQueue;  // outlives every thread that may still add to it
  return *queue;
}
}  // namespace

void asyncOnUtilityQueue(std::function<void()> work) { std::thread(std::move(work)).detach(); }

void afterDelayOnMainQueue(std::chrono::nanoseconds delay, std::function<void()> work) {
  mainQueue().add(Clock::now() + delay, std::move(work));
}

void serveMainQueueUntil(const std::function<bool()>& isDone) {
  do {
    mainQueue().take()();
  } while (!isDone());
}
}  // namespace wendle
