#pragma once

// What GNUstep lacks of macOS's frameworks; every source is compiled with it.

#import <Foundation/Foundation.h>

#include <string>
#include <vector>

@interface NSRunningApplication : NSObject {
  int process_;
}
@property(readonly) int processIdentifier;
+ (NSArray*)runningApplicationsWithBundleIdentifier:(NSString*)bundleIdentifier;
+ (instancetype)runningApplicationWithProcessIdentifier:(int)process;
- (BOOL)terminate;
- (BOOL)forceTerminate;
@end

@interface NSURL (LacksInGNUstep)
+ (NSURL*)fileURLWithFileSystemRepresentation:(const char*)path
                                  isDirectory:(BOOL)flag
                                relativeToURL:(NSURL*)base;
- (NSData*)bookmarkDataWithOptions:(NSUInteger)options
    includingResourceValuesForKeys:(NSArray*)keys
                     relativeToURL:(NSURL*)base
                             error:(NSError**)error;
@end

@interface NSUserDefaults (LacksInGNUstep)
- (instancetype)initWithSuiteName:(NSString*)suiteName;
@end

namespace wendle::test {

extern std::vector<std::pair<int, NSString*>> listedApplications;  // the registry, as a test sets it
extern std::string requests;  // what was asked of applications, such as "terminate 7, forceTerminate 8, "

void makeBlocksObjects();  // as on macOS: GCC's runtime takes them for none, and they would not answer `copy`

}  // namespace wendle::test
