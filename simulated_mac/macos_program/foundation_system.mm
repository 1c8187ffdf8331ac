// What Foundation and AppKit tell of the process, the user and what runs, as it is in a simulated Mac. From
// Apple's documentation of each class and function, and for the home from the sources of CoreFoundation.
#import <Foundation/Foundation.h>
#include <objc/runtime.h>

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "simulated_mac/macos_program/imports.h"
#include "simulated_mac/macos_program/refusal.h"
#include "simulated_mac/macos_program/start.h"

namespace {
NSString* toText(const std::string& bytes) {
  NSString* text = [NSString stringWithUTF8String:bytes.c_str()];
  return text != nil ? text : [NSString stringWithCString:bytes.c_str() encoding:NSISOLatin1StringEncoding];
}

std::string homeDirectory() {
  constexpr std::string_view name = "CFFIXED_USER_HOME=";
  for (char** entry = wendle::macho::start().environment; *entry != nullptr; ++entry) {
    if (std::string_view(*entry).starts_with(name)) return *entry + name.size();
  }
  return "/Users/pat";  // what the user database says of the Mac's one user
}

// In ascending order, the processes whose environment has what macOS sets for an application that it starts.
std::vector<int> processesOfApplication(const std::string& identifier) {
  const std::string wanted = std::string(1, '\0') + "__CFBundleIdentifier=" + identifier + '\0';
  std::vector<int> found;
  for (const auto& entry : std::filesystem::directory_iterator("/proc")) {
    const int process = std::atoi(entry.path().filename().c_str());
    if (process <= 0) continue;
    std::ostringstream environment;
    environment << '\0' << std::ifstream(entry.path() / "environ").rdbuf();
    if (environment.str().find(wanted) != std::string::npos) found.push_back(process);
  }
  std::sort(found.begin(), found.end());
  return found;
}
}  // namespace

@interface MacRunningApplication : NSObject {
  int process_;
}
@end

@implementation MacRunningApplication
+ (NSArray*)runningApplicationsWithBundleIdentifier:(NSString*)identifier {
  NSMutableArray* found = [NSMutableArray array];
  for (const int process : processesOfApplication([identifier UTF8String])) {
    MacRunningApplication* application = [[[self alloc] init] autorelease];
    application->process_ = process;
    [found addObject:application];
  }
  return found;
}
- (int)processIdentifier {
  return process_;
}
- (BOOL)terminate {
  return ::kill(process_, SIGTERM) == 0;
}
- (BOOL)forceTerminate {
  return ::kill(process_, SIGKILL) == 0;
}
@end

@interface MacProcessInfo : NSObject
@end

@implementation MacProcessInfo
+ (instancetype)processInfo {
  static MacProcessInfo* const info = [[MacProcessInfo alloc] init];
  return info;
}
- (NSArray*)arguments {
  NSMutableArray* arguments = [NSMutableArray array];
  for (char** argument = wendle::macho::start().arguments; *argument != nullptr; ++argument) {
    [arguments addObject:toText(*argument)];
  }
  return arguments;
}
@end

// Of a command-line tool, which is in no bundle: the directory that it lies in.
@interface MacBundle : NSObject
@end

@implementation MacBundle
+ (instancetype)mainBundle {
  static MacBundle* const bundle = [[MacBundle alloc] init];
  return bundle;
}
+ (instancetype)bundleForClass:(Class)type {
  return [self mainBundle];
}
- (NSString*)bundlePath {
  return toText(std::filesystem::path(wendle::macho::start().arguments[0]).parent_path());
}
@end

// The preferences of one domain, in the file where macOS's preferences server keeps them.
@interface MacUserDefaults : NSObject {
  NSString* file_;
  NSMutableDictionary* written_;
}
@end

@implementation MacUserDefaults
- (instancetype)initWithSuiteName:(NSString*)domain {
  if (domain == nil) wendle::macho::refuse("the preferences of the program itself are unknown here");
  file_ =
      [[NSString alloc] initWithFormat:@"%@/Library/Preferences/%@.plist", toText(homeDirectory()), domain];
  written_ = [[NSMutableDictionary alloc] init];
  return self;
}
- (void)dealloc {
  [file_ release];
  [written_ release];
  [super dealloc];
}
- (NSMutableDictionary*)content {
  NSData* data = [NSData dataWithContentsOfFile:file_];
  if (data == nil) return [NSMutableDictionary dictionary];
  return [NSPropertyListSerialization propertyListFromData:data
                                          mutabilityOption:NSPropertyListMutableContainers
                                                    format:nullptr
                                          errorDescription:nullptr];
}
- (id)objectForKey:(NSString*)key {
  id written = [written_ objectForKey:key];
  return written != nil ? written : [[self content] objectForKey:key];
}
- (void)setObject:(id)value forKey:(NSString*)key {
  [written_ setObject:value forKey:key];
}
- (BOOL)synchronize {
  NSMutableDictionary* content = [self content];
  if (content == nil) return NO;
  [content addEntriesFromDictionary:written_];
  NSData* data = [NSPropertyListSerialization dataFromPropertyList:content
                                                            format:NSPropertyListBinaryFormat_v1_0
                                                  errorDescription:nullptr];
  return [data writeToFile:file_ atomically:YES];
}
@end

namespace wendle::macho {
namespace {
NSString* home() { return toText(homeDirectory()); }

NSArray* searchPaths(NSUInteger directory, NSUInteger domain, BOOL expandsTilde) {
  if (expandsTilde == NO) refuse("standard directories with a tilde are unknown here");
  constexpr NSUInteger inHome = 1, onMachine = 2;
  constexpr NSUInteger applications = 1, library = 5, users = 7, applicationSupport = 14;
  if (domain == inHome && directory == library)
    return [NSArray arrayWithObject:toText(homeDirectory() + "/Library")];
  if (domain == inHome && directory == applicationSupport) {
    return [NSArray arrayWithObject:toText(homeDirectory() + "/Library/Application Support")];
  }
  if (domain == onMachine && directory == users) return [NSArray arrayWithObject:@"/Users"];
  if (domain == onMachine && directory == applications) return [NSArray arrayWithObject:@"/Applications"];
  refuse("the standard directory " + std::to_string(directory) + " in the domain " + std::to_string(domain) +
         " is unknown here");
}

// The program adds a category to this class. GCC's runtime takes classes that clang compiled for such as are
// still being made, which get no working methods; so it must have made the class itself.
Class runningApplicationClass() {
  Class type = objc_allocateClassPair([MacRunningApplication class], "NSRunningApplication", 0);
  objc_registerClassPair(type);
  return type;
}
}  // namespace

Imports foundationSystemImports() {
  static const Import imports[] = {
      provide("_NSGetUncaughtExceptionHandler", NSGetUncaughtExceptionHandler),
      provide("_NSHomeDirectory", home),
      provide("_NSSearchPathForDirectoriesInDomains", searchPaths),
      provide("_NSSetUncaughtExceptionHandler", NSSetUncaughtExceptionHandler),
      {"_OBJC_CLASS_$_NSBundle", static_cast<void*>([MacBundle class])},
      {"_OBJC_CLASS_$_NSProcessInfo", static_cast<void*>([MacProcessInfo class])},
      {"_OBJC_CLASS_$_NSRunningApplication", static_cast<void*>(runningApplicationClass())},
      {"_OBJC_CLASS_$_NSUserDefaults", static_cast<void*>([MacUserDefaults class])},
  };
  return imports;
}
}  // namespace wendle::macho
