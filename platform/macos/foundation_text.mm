#include "platform/macos/foundation_text.h"

namespace wendle {

NSString* foundationText(std::string_view text) {
  for (const NSStringEncoding encoding : {NSUTF8StringEncoding, NSISOLatin1StringEncoding}) {
    NSString* decoded = [[NSString alloc] initWithBytes:text.data() length:text.size() encoding:encoding];
    if (decoded != nil) return decoded;
  }
  return @"";
}

std::string textOf(NSString* text) {
  @autoreleasepool {
    // Lossy, for half a surrogate pair: UTF-8 cannot say it.
    NSData* bytes = [text dataUsingEncoding:NSUTF8StringEncoding allowLossyConversion:YES];
    return {static_cast<const char*>(bytes.bytes), bytes.length};
  }
}

}  // namespace wendle
