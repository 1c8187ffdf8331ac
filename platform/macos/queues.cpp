#include "platform/queues.h"

#include <dispatch/dispatch.h>

namespace wendle {
// An exception ends the process where it is thrown, not somewhere in the queue's own frames.
static void run(const std::function<void()>& work) noexcept { work(); }

void asyncOnUtilityQueue(std::function<void()> work) {
  dispatch_async(dispatch_get_global_queue(QOS_CLASS_UTILITY, 0), ^{
    run(work);
  });
}

void afterDelayOnMainQueue(std::chrono::nanoseconds delay, std::function<void()> work) {
  dispatch_after(dispatch_time(DISPATCH_TIME_NOW, delay.count()), dispatch_get_main_queue(), ^{
    run(work);
  });
}
}  // namespace wendle
