#include <Block_private.h>

#include <algorithm>

std::vector<std::pair<int, NSString*>> wendle::test::listedApplications;
std::string wendle::test::requests;

// What these bodies allocate is never released: they are written for ARC.
extern "C" __attribute__((visibility("default"))) const char* __asan_default_options();
const char* __asan_default_options() { return "detect_leaks=0"; }

static BOOL note(SEL request, int process) {
  wendle::test::requests += sel_getName(request) + (" " + std::to_string(process)) + ", ";
  return YES;
}

@implementation NSRunningApplication
+ (NSArray*)runningApplicationsWithBundleIdentifier:(NSString*)bundleIdentifier {
  NSMutableArray* found = [NSMutableArray array];
  for (const auto& [process, identifier] : wendle::test::listedApplications) {
    if (![identifier isEqualToString:bundleIdentifier]) continue;
    [found addObject:[self runningApplicationWithProcessIdentifier:process]];
  }
  return found;
}
+ (instancetype)runningApplicationWithProcessIdentifier:(int)process {
  NSRunningApplication* application = [[NSRunningApplication alloc] init];
  application->process_ = process;
  return application;
}
- (int)processIdentifier {
  return process_;
}
- (BOOL)terminate {
  return note(_cmd, process_);
}
- (BOOL)forceTerminate {
  return note(_cmd, process_);
}
@end

@implementation NSURL (LacksInGNUstep)
+ (NSURL*)fileURLWithFileSystemRepresentation:(const char*)path
                                  isDirectory:(BOOL)flag
                                relativeToURL:(NSURL*)base {
  NSMutableString* text = [NSMutableString stringWithString:@"file://"];
  for (; *path != '\0'; ++path) [text appendFormat:*path == '/' ? @"%c" : @"%%%02X", *path & 0xFF];
  if (flag && ![text hasSuffix:@"/"]) [text appendString:@"/"];
  return [NSURL URLWithString:text relativeToURL:base];
}
- (NSData*)bookmarkDataWithOptions:(NSUInteger)options
    includingResourceValuesForKeys:(NSArray*)keys
                     relativeToURL:(NSURL*)base
                             error:(NSError**)error {
  if (![[NSFileManager defaultManager] fileExistsAtPath:self.path]) return nil;
  return [[@"book" stringByAppendingString:self.path] dataUsingEncoding:NSUTF8StringEncoding];
}
@end

// GNUstep writes one domain only: the one that is named after the process.
@implementation NSUserDefaults (LacksInGNUstep)
- (instancetype)initWithSuiteName:(NSString*)suiteName {
  if (![suiteName isEqualToString:[[NSProcessInfo processInfo] processName]]) return nil;
  return [NSUserDefaults standardUserDefaults];
}
@end

void wendle::test::makeBlocksObjects() {
  Class type = NSClassFromString(@"GSBlock");
  (void)[[type alloc] init];      // the runtime completes a class when it is first used
  constexpr int classWords = 13;  // of a class of GCC's runtime
  for (void** place : {_NSConcreteStackBlock, _NSConcreteMallocBlock, _NSConcreteGlobalBlock}) {
    std::copy_n(reinterpret_cast<void**>(type), classWords, place);
  }
}
