#include "platform/macos/foundation_values.h"
#import "processes/NSRunningApplication+AFXExtensions.h"
#include "processes/process_termination.h"

@implementation NSRunningApplication (AFXExtensions)

+ (void)terminateRunningApplicationsWithBundleIdentifier:(NSString*)bundleIdentifier {
  wendle::terminateRunningApplicationsWithBundleIdentifier(wendle::toUtf8(bundleIdentifier));
}

@end
