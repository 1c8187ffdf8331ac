#import "processes/NSRunningApplication+AFXExtensions.h"

@implementation NSRunningApplication (AFXExtensions)

+ (void)terminateRunningApplicationsWithBundleIdentifier:(NSString*)bundleIdentifier {
  NSArray<NSRunningApplication*>* applications =
      [NSRunningApplication runningApplicationsWithBundleIdentifier:bundleIdentifier];
  [applications enumerateObjectsUsingBlock:^(NSRunningApplication* application, NSUInteger, BOOL*) {
    [application terminate];
  }];
}

@end
