// Threads' locks and data, and queues. The sizes and first words of locks are those of macOS's
// <sys/_pthread/_pthread_types.h> and <pthread/pthread_impl.h>; blocks are the compiler's (Clang's page
// on their binary interface), copied by Debian's blocks runtime; queues are those of
// <dispatch/dispatch.h>, served as on Linux.
#include <Block.h>
#include <Block_private.h>
#include <pthread.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <memory>

#include "platform/queues.h"
#include "simulated_mac/macos_program/darwin.h"
#include "simulated_mac/macos_program/imports.h"
#include "simulated_mac/macos_program/objective_c.h"
#include "simulated_mac/macos_program/refusal.h"

namespace wendle::macho {
namespace {
// A lock in the program's memory: a word that its static initialiser sets, and room, in which ours is kept
// from the first use on.
template <typename Lock, std::uint64_t initialWord>
struct DarwinLock {
  std::uint64_t word;
  std::atomic<Lock*> kept;

  Lock* lock() {
    if (word != initialWord) refuse("a lock begins with a word that is unknown here");
    Lock* found = kept;
    if (found != nullptr) return found;
    auto made = std::make_unique<Lock>();
    *made = {};  // as PTHREAD_MUTEX_INITIALIZER and PTHREAD_COND_INITIALIZER have it
    return kept.compare_exchange_strong(found, made.get()) ? made.release() : found;
  }
};
using Mutex = DarwinLock<pthread_mutex_t, 0x32AAABA7>;
using Condition = DarwinLock<pthread_cond_t, 0x3CB0B1BB>;

int lockMutex(Mutex* mutex) { return toDarwinError(::pthread_mutex_lock(mutex->lock())); }
int unlockMutex(Mutex* mutex) { return toDarwinError(::pthread_mutex_unlock(mutex->lock())); }
int destroyMutex(Mutex* mutex) {
  delete mutex->kept.exchange(nullptr);
  return 0;
}
int awaitCondition(Condition* condition, Mutex* mutex) {
  return toDarwinError(::pthread_cond_wait(condition->lock(), mutex->lock()));
}
int signalAll(Condition* condition) { return toDarwinError(::pthread_cond_broadcast(condition->lock())); }

// On pthread_once_t's first word, which changes when it is done.
int runOnce(std::atomic<std::uint64_t>* once, void (*function)()) {
  constexpr std::uint64_t initialWord = 0x30B1BCBA, done = 0;
  static pthread_mutex_t running = PTHREAD_RECURSIVE_MUTEX_INITIALIZER_NP;
  if (*once == done) return 0;
  ::pthread_mutex_lock(&running);
  if (*once == initialWord) {
    function();
    *once = done;
  }
  ::pthread_mutex_unlock(&running);
  if (*once != done) refuse("pthread_once begins with a word that is unknown here");
  return 0;
}

int createKey(std::uint64_t* result, void (*destroy)(void*)) {
  pthread_key_t key = 0;
  const int error = ::pthread_key_create(&key, destroy);
  *result = key;
  return toDarwinError(error);
}
void* specific(std::uint64_t key) { return ::pthread_getspecific(static_cast<pthread_key_t>(key)); }
int setSpecific(std::uint64_t key, const void* value) {
  return toDarwinError(::pthread_setspecific(static_cast<pthread_key_t>(key), value));
}
unsigned threadNumber(pthread_t thread) {
  if (::pthread_equal(thread, ::pthread_self()) == 0) refuse("the number of another thread is unknown here");
  return static_cast<unsigned>(::syscall(SYS_gettid));
}

// What queues are known by: an address each.
const char mainQueue = 1, utilityQueue = 2;
using Block = struct BlockLayout {
  void* isa;
  int flags, reserved;
  void (*invoke)(BlockLayout*);
};

// The work that a block is; the copy lives as long as it. Each has an autorelease pool, as on macOS.
std::function<void()> toWork(const Block* block) {
  const std::shared_ptr<Block> copy(static_cast<Block*>(_Block_copy(block)), _Block_release);
  return [copy] {
    const AutoreleasePool pool;
    copy->invoke(copy.get());
  };
}

const char* globalQueue(std::intptr_t quality, std::uintptr_t flags) {
  constexpr std::intptr_t utility = 0x11;  // QOS_CLASS_UTILITY
  if (quality != utility || flags != 0)
    refuse("a global queue of the class " + std::to_string(quality) + " is unknown here");
  return &utilityQueue;
}

void async(const char* queue, const Block* block) {
  if (queue != &utilityQueue) refuse("dispatch_async to that queue is unknown here");
  asyncOnUtilityQueue(toWork(block));
}

// In nanoseconds.
std::uint64_t now() {
  timespec time{};
  ::clock_gettime(CLOCK_MONOTONIC, &time);
  return static_cast<std::uint64_t>(time.tv_sec) * 1'000'000'000 + static_cast<std::uint64_t>(time.tv_nsec);
}
std::uint64_t timeAfter(std::uint64_t start, std::int64_t delay) {
  if (start != 0) refuse("dispatch_time from another time than now is unknown here");
  return now() + static_cast<std::uint64_t>(delay);
}

void after(std::uint64_t when, const char* queue, const Block* block) {
  if (queue != &mainQueue) refuse("dispatch_after to that queue is unknown here");
  const auto left = static_cast<std::int64_t>(when - now());
  afterDelayOnMainQueue(std::chrono::nanoseconds(left), toWork(block));
}
}  // namespace

Imports threadImports() {
  static const Import imports[] = {
      provide("_pthread_mutex_lock", lockMutex),
      provide("_pthread_mutex_unlock", unlockMutex),
      provide("_pthread_mutex_destroy", destroyMutex),
      provide("_pthread_cond_wait", awaitCondition),
      provide("_pthread_cond_broadcast", signalAll),
      provide("_pthread_once", runOnce),
      provide("_pthread_key_create", createKey),
      provide("_pthread_getspecific", specific),
      provide("_pthread_setspecific", setSpecific),
      provide("_pthread_self", ::pthread_self),
      provide("_pthread_mach_thread_np", threadNumber),
      {"__NSConcreteStackBlock", _NSConcreteStackBlock},
      {"__dispatch_main_q", &mainQueue},
      provide("_dispatch_get_global_queue", globalQueue),
      provide("_dispatch_async", async),
      provide("_dispatch_time", timeAfter),
      provide("_dispatch_after", after),
  };
  return imports;
}
}  // namespace wendle::macho
