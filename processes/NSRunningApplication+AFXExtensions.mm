#include "platform/macos/foundation_text.h"
#import "processes/NSRunningApplication+AFXExtensions.h"
#include "processes/process_termination.h"

@implementation NSRunningApplication (AFXExtensions)

+ (void)terminateRunningApplicationsWithBundleIdentifier:(NSString*)bundleIdentifier {
  wendle::terminateRunningApplicationsWithBundleIdentifier(wendle::textOf(bundleIdentifier));
}

@end
