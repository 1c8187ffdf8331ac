// The tests' own executable is also a program that uses what is exported to Objective-C, for a session on the
// simulated Mac:   objective_c_tests mode METHOD | change FOLDER | overlap FOLDER
// It prints what it sees, a line each.
#include <gtest/gtest.h>
#include <unistd.h>

#include <iostream>

#import "app/AFXWendleUninstaller.h"
#import "dock/AFXDockShortcutManager.h"
#include "logging/logger_configurator.h"
#include "platform/linux/main_queue.h"
#include "platform/process_environment.h"

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

static void runMode(NSString* method) {
  NSString *desktop = @"com.wendle.DesktopClient", *agent = @"com.wendle.DesktopClient.WendleAgent";
  NSString *extension = @"com.wendle.DesktopClient.WendleExtension",
           *other = @"com.wendle.DesktopClient.WendleUpdater";
  listedApplications = {{41, desktop}, {42, agent}, {43, extension}, {44, desktop}, {45, other}};
  LoggerConfigurator::setupModuleLoggerWithSystem("uninstaller");
  [[AFXWendleUninstaller shared] performSelector:NSSelectorFromString(method)];
  std::cout << requests << homeDirectoryPath() << "\n";
}

static void removeTile(AFXDockShortcutManager* manager, NSURL* folder) {
  [manager changePersistenceOfShortcutInDockFolderURL:folder add:NO completion:nil];
  while (manager.isChangingPersistenceOfShortcutInDock) ::usleep(10'000);
  std::cout << "has " << int{[manager getPersistenceOfShortcutInDockFolderURL:folder]} << "\n";
}

static void addTile(NSURL* folder, bool overlaps) {
  AFXDockShortcutManager* manager =
      overlaps ? [[AFXDockShortcutManager alloc] init] : [AFXDockShortcutManager sharedInstance];
  std::cout << "has " << int{[manager getPersistenceOfShortcutInDockFolderURL:folder]} << "\n";
  const NSKeyValueObservingOptions both = NSKeyValueObservingOptionOld | NSKeyValueObservingOptionNew;
  NSString* key = @"isChangingPersistenceOfShortcutInDock";
  [manager addObserver:[[FlagObserver alloc] init] forKeyPath:key options:both context:nullptr];
  static bool isDone = false;
  void (^completion)(BOOL) = ^(BOOL result) {
    std::cout << "completion " << int{result} << ", flag "
              << int{manager.isChangingPersistenceOfShortcutInDock} << ", main thread "
              << int{[NSThread isMainThread]} << "\n";
    isDone = true;
  };
  if (overlaps) [manager changePersistenceOfShortcutInDockFolderURL:folder add:YES completion:nil];
  [manager changePersistenceOfShortcutInDockFolderURL:folder add:YES completion:completion];
  serveMainQueueUntil([] { return isDone; });
  std::cout << "has " << int{[manager getPersistenceOfShortcutInDockFolderURL:folder]} << "\n";
  if (!overlaps) return;
  (void)!::chdir(folder.path.UTF8String);  // a URL without a path is not this folder's
  NSURL* pathless = [NSURL URLWithString:@"mailto:pat"];
  std::cout << "has " << int{[manager getPersistenceOfShortcutInDockFolderURL:pathless]} << "\n";
  removeTile(manager, folder);
}

}  // namespace wendle::test

int main(int argc, char** argv) {
  @autoreleasepool {
    testing::InitGoogleTest(&argc, argv);
    if (argc != 3) return RUN_ALL_TESTS();
    [[NSProcessInfo processInfo] setProcessName:@"com.apple.dock"];  // GNUstep writes this domain for us then
    wendle::test::makeBlocksObjects();
    const std::string verb = argv[1];
    NSString* argument = [NSString stringWithUTF8String:argv[2]];
    if (verb == "mode") wendle::test::runMode(argument);
    if (verb != "mode") wendle::test::addTile([NSURL fileURLWithPath:argument], verb == "overlap");
    return 0;
  }
}
