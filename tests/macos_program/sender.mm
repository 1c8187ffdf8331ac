// Loads the macOS executable that its first argument names, without calling its `main`, and sends messages to
// its classes, for a session on the simulated Mac; the second argument says which. It prints what comes back,
// a line each.
#include <sys/wait.h>
#include <unistd.h>

#include <barrier>
#include <cstdlib>
#include <functional>
#include <future>
#include <iostream>
#include <map>
#include <set>
#include <vector>

#import "app/AFXWendleUninstaller.h"
#import "app/WendleUninstallerResources.h"
#import "dock/AFXDockShortcutManager.h"
#include "platform/queues.h"
#import "processes/NSRunningApplication+AFXExtensions.h"
#include "simulated_mac/macos_program/image.h"
#include "simulated_mac/macos_program/imports.h"
#include "simulated_mac/macos_program/objective_c.h"
#include "simulated_mac/macos_program/start.h"

@interface FlagObserver : NSObject
@end

@implementation FlagObserver
- (void)observeValueForKeyPath:(NSString*)path
                      ofObject:(id)sender
                        change:(NSDictionary*)change
                       context:(void*)context {
  std::cout << [path UTF8String] << " from " << [[change objectForKey:NSKeyValueChangeOldKey] intValue]
            << " to " << [[change objectForKey:NSKeyValueChangeNewKey] intValue] << std::endl;
}
@end

namespace wendle::test {
namespace {
Class uninstallerClass() { return objc_getClass("AFXWendleUninstaller"); }
Class managerClass() { return objc_getClass("AFXDockShortcutManager"); }

NSURL* fileUrl(const std::string& path) {
  return [NSURL fileURLWithPath:[NSString stringWithUTF8String:path.c_str()]];
}

void printWhether(const char* what, bool is) { std::cout << what << (is ? " yes" : " no") << std::endl; }

bool isOne(id (*instance)()) {
  constexpr int callers = 8;
  std::barrier together(callers);
  std::vector<std::future<id>> calls;
  const auto call = [&] { return together.arrive_and_wait(), instance(); };
  while (calls.size() < callers) calls.push_back(std::async(std::launch::async, call));
  std::set<id> seen;
  for (auto& each : calls) seen.insert(each.get());
  return seen.size() == 1 && !seen.contains(nil);
}

void askSharedInstances() {
  printWhether("one uninstaller", isOne([]() -> id { return [uninstallerClass() shared]; }));
  printWhether("one manager", isOne([]() -> id { return [managerClass() sharedInstance]; }));
  Class resources = objc_getClass("WendleUninstallerResources");
  printWhether("one bundle", [resources bundle] == [resources bundle] && [resources bundle] != nil);
}

void terminateDesktop() {
  [objc_getClass("NSRunningApplication")
      terminateRunningApplicationsWithBundleIdentifier:@"com.wendle.DesktopClient"];
}

void askManager() {
  AFXDockShortcutManager* manager = [managerClass() sharedInstance];
  printWhether(
      "flag is automatic",
      [managerClass() automaticallyNotifiesObserversForKey:@"isChangingPersistenceOfShortcutInDock"]);
  printWhether("others are", [managerClass() automaticallyNotifiesObserversForKey:@"other"]);
  for (NSString* text : {@"file:///Users", @"file:///Nowhere/%C3%A9%3B", @"mailto:pat"}) {
    NSString* fixed = [[manager fileURLWithFixedTrailingSlash:[NSURL URLWithString:text]] absoluteString];
    std::cout << (fixed == nil ? "none" : [fixed UTF8String]) << std::endl;
  }
}

// The same with the shared instance, and with another one whose flag a change under way has raised already.
void changeTile(AFXDockShortcutManager* manager, NSURL* folder, bool overlaps) {
  const auto printTile = [&] {
    printWhether("tile", [manager getPersistenceOfShortcutInDockFolderURL:folder]);
  };
  printTile();
  const NSKeyValueObservingOptions both = NSKeyValueObservingOptionOld | NSKeyValueObservingOptionNew;
  NSString* flag = @"isChangingPersistenceOfShortcutInDock";
  [manager addObserver:[[FlagObserver alloc] init] forKeyPath:flag options:both context:nullptr];
  static bool isDone = false;
  if (overlaps) [manager changePersistenceOfShortcutInDockFolderURL:folder add:YES completion:nil];
  [manager
      changePersistenceOfShortcutInDockFolderURL:folder
                                             add:YES
                                      completion:^(BOOL result) {
                                        printWhether("completed", result);
                                        printWhether("flag", manager.isChangingPersistenceOfShortcutInDock);
                                        isDone = true;
                                      }];
  printWhether("flag", manager.isChangingPersistenceOfShortcutInDock);
  serveMainQueueUntil([] { return isDone; });
  printTile();
  [manager changePersistenceOfShortcutInDockFolderURL:folder add:NO completion:nil];
  while (manager.isChangingPersistenceOfShortcutInDock) ::usleep(10'000);
  printTile();
}

// Preferences may hold what GNUstep cannot write into a file; so they come from here.
NSArray* rareValues() {
  NSString* text = [[NSString alloc] initWithBytes:"a\0b" length:3 encoding:NSUTF8StringEncoding];
  static NSArray* const values =
      [[NSArray alloc] initWithObjects:[NSNumber numberWithUnsignedLongLong:UINT64_MAX],
                                       [NSNumber numberWithFloat:0.5F], text, nil];
  return values;
}

void keepRareValues() {
  Class defaults = objc_getClass("MacUserDefaults");
  const auto replace = [&](SEL method, auto function) {
    method_setImplementation(class_getInstanceMethod(defaults, method), reinterpret_cast<IMP>(function));
  };
  replace(
      @selector(objectForKey:), +[](id, SEL, id) { return rareValues(); });
  replace(
      @selector(setObject:forKey:), +[](id, SEL, id written, id) {
        printWhether("kept", [written isEqual:rareValues()]);
        std::_Exit(0);
      });
  [[managerClass() sharedInstance] changePersistenceOfShortcutInDockFolderURL:fileUrl("/")
                                                                          add:NO
                                                                   completion:nil];
  for (;;) ::pause();
}

// Ends in the middle of a mode that `main` was started for, by what the class is made to do in its place.
void endInMode(const macho::Image& image, void (*end)(id, SEL)) {
  NSSetUncaughtExceptionHandler(+[](NSException*) { std::cout << "previous handler" << std::endl; });
  Method mode = class_getInstanceMethod(uninstallerClass(), @selector(runInUpdatesMode));
  method_setImplementation(mode, reinterpret_cast<IMP>(end));
  (void)image.runMain();
}

void raiseException(id, SEL) { [NSException raise:@"Name" format:@"reason"]; }

void throwInBackground(id, SEL) {
  [[managerClass() sharedInstance] changePersistenceOfShortcutInDockFolderURL:fileUrl("/Nothing")
                                                                          add:YES
                                                                   completion:nil];
  for (;;) ::pause();
}

template <typename... A>
void call(const char* import, A... arguments) {
  void* const function = const_cast<void*>(macho::findImport(import));
  reinterpret_cast<long (*)(A...)>(function)(arguments...);
}

// Calls with an argument that only macOS knows, each in a process of its own, which it should end.
void askForTheUnknown() {
  static long long zeroes[8], recursiveMutex[8] = {0x32AAABA2};
  static void* attributes = zeroes;
  const std::function<void()> calls[] = {
      [] { call("_unlinkat", -2, "/nothing", 0x800); },              // AT_SYMLINK_NOFOLLOW_ANY
      [] { call("_posix_spawnattr_setflags", &attributes, 0x80); },  // POSIX_SPAWN_START_SUSPENDED
      [] { call("_pthread_mutex_lock", recursiveMutex); },
      [] { call("_NSSearchPathForDirectoriesInDomains", 9L, 1L, YES); },  // NSDocumentDirectory
  };
  for (const auto& each : calls) {
    const pid_t child = ::fork();
    if (child == 0) {
      each();
      ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    if (status != 2 << 8) std::cerr << "goes on, or ends with the status " << status << std::endl;
  }
}
}  // namespace
}  // namespace wendle::test

int main() {
  using namespace wendle::test;
  const char* const* arguments = wendle::macho::start().arguments;
  const std::string verb = arguments[1], argument = arguments[2] == nullptr ? "" : arguments[2];
  wendle::macho::startFoundation();
  const wendle::macho::Image& image = wendle::macho::Image::load(arguments[0]);
  if (verb == "instances") askSharedInstances();
  if (verb == "terminate") terminateDesktop();
  if (verb == "manager") askManager();
  if (verb == "change") changeTile([managerClass() sharedInstance], fileUrl(argument), false);
  if (verb == "overlap") changeTile([[managerClass() alloc] init], fileUrl(argument), true);
  if (verb == "rare") keepRareValues();
  if (verb == "raise") endInMode(image, raiseException);
  if (verb == "throw") endInMode(image, throwInBackground);
  if (verb == "unknown") askForTheUnknown();
  return 0;
}
