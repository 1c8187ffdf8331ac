#pragma once

// What this project uses of AppKit, for builds without Apple's SDK.

#import <Foundation/Foundation.h>
#include <sys/types.h>

NS_ASSUME_NONNULL_BEGIN

@interface NSRunningApplication : NSObject
@property(readonly) pid_t processIdentifier;
+ (NSArray<NSRunningApplication*>*)runningApplicationsWithBundleIdentifier:(NSString*)bundleIdentifier;
+ (nullable instancetype)runningApplicationWithProcessIdentifier:(pid_t)pid;
- (BOOL)terminate;
- (BOOL)forceTerminate;
@end

NS_ASSUME_NONNULL_END
