#pragma once

#import <AppKit/AppKit.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSRunningApplication (AFXExtensions)

/// Asks every running application with that bundle identifier to quit, in the registry's order, and returns
/// at once: one may still run, or refuse. None running is fine.
+ (void)terminateRunningApplicationsWithBundleIdentifier:(NSString*)bundleIdentifier;

@end

NS_ASSUME_NONNULL_END
