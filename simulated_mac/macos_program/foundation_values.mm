// Strings, URLs and blocks where GNUstep's are not macOS's. From the sources of CoreFoundation: the structure
// of constant strings, and the escapes in file URLs; from those of the blocks runtime: that a block is an
// object.
#include <Block_private.h>
#import <Foundation/Foundation.h>
#include <sys/stat.h>

#include <algorithm>
#include <string_view>

#include "simulated_mac/macos_program/imports.h"
#include "simulated_mac/macos_program/objective_c.h"
#include "simulated_mac/macos_program/refusal.h"

// A string in the image's section __cfstring.
@interface MacConstantString : NSString {
  NSUInteger flags_;
  const void* characters_;
  NSUInteger length_;
}
@end

@implementation MacConstantString
- (NSUInteger)length {
  return length_;
}
- (unichar)characterAtIndex:(NSUInteger)index {
  constexpr NSUInteger isUtf16 = 0x10;
  if ((flags_ & isUtf16) != 0) return static_cast<const unichar*>(characters_)[index];
  return static_cast<const unsigned char*>(characters_)[index];
}
- (instancetype)retain {
  return self;
}
- (oneway void)release {
}
- (instancetype)autorelease {
  return self;
}
- (id)copyWithZone:(NSZone*)zone {
  return self;
}
@end

@interface MacURL : NSURL
@end

@implementation MacURL
+ (instancetype)fileURLWithFileSystemRepresentation:(const char*)path
                                        isDirectory:(BOOL)isDirectory
                                      relativeToURL:(NSURL*)base {
  if (base != nil) wendle::macho::refuse("a file URL relative to another is unknown here");
  constexpr std::string_view plain = "-._~!$&'()*+,=:@/";
  NSMutableString* text = [NSMutableString stringWithString:@"file://"];
  for (const char c : std::string_view(path)) {
    const bool isPlain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                         plain.find(c) != plain.npos;
    [text appendFormat:isPlain ? @"%c" : @"%%%02X", static_cast<unsigned char>(c)];
  }
  if (isDirectory && ![text hasSuffix:@"/"]) [text appendString:@"/"];
  return [self URLWithString:text];
}
+ (instancetype)fileURLWithPath:(NSString*)path isDirectory:(BOOL)isDirectory {
  return [self fileURLWithFileSystemRepresentation:[path UTF8String]
                                       isDirectory:isDirectory
                                     relativeToURL:nil];
}
// A link is no directory, wherever it leads.
+ (instancetype)fileURLWithPath:(NSString*)path {
  struct stat status {};
  const bool isDirectory =
      [path hasSuffix:@"/"] || (::lstat([path UTF8String], &status) == 0 && S_ISDIR(status.st_mode));
  return [self fileURLWithPath:path isDirectory:isDirectory];
}
@end

// The simulated Mac's bookmark data is a name for the item: none when it does not exist.
@implementation NSURL (LacksInGNUstep)
- (NSData*)bookmarkDataWithOptions:(NSUInteger)options
    includingResourceValuesForKeys:(NSArray*)keys
                     relativeToURL:(NSURL*)base
                             error:(NSError**)error {
  if (options != 0 || keys != nil || base != nil)
    wendle::macho::refuse("bookmark data with options is unknown here");
  if (![[NSFileManager defaultManager] fileExistsAtPath:[self path]]) return nil;
  return [[@"book" stringByAppendingString:[self path]] dataUsingEncoding:NSUTF8StringEncoding];
}
@end

namespace wendle::macho {
namespace {
// What a block's first word points to is no class for GCC's runtime; so it gets the contents of GNUstep's
// class of blocks.
void makeBlocksObjects() {
  Class type = NSClassFromString(@"GSBlock");
  // The runtime completes a class when it is first used. This object stays: it is no block that could be
  // released.
  static const id first = [[type alloc] init];
  (void)first;
  constexpr int classWords = 13;  // of a class of GCC's runtime
  for (void** place : {_NSConcreteStackBlock, _NSConcreteMallocBlock, _NSConcreteGlobalBlock}) {
    std::copy_n(reinterpret_cast<void**>(type), classWords, place);
  }
}
}  // namespace

void startFoundation() {
  (void)[[NSAutoreleasePool alloc] init];  // for what GNUstep keeps from the start on
  makeBlocksObjects();
  NSZombieEnabled = YES;  // an object that is used after its end says so, and the process ends
}

Imports foundationValueImports() {
  static const Import imports[] = {
      {"___CFConstantStringClassReference", static_cast<void*>([MacConstantString class])},
      {"_OBJC_CLASS_$_NSURL", static_cast<void*>([MacURL class])},
  };
  return imports;
}
}  // namespace wendle::macho
