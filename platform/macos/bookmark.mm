#include "platform/bookmark.h"

#import <Foundation/Foundation.h>

#include "platform/macos/foundation_values.h"

namespace wendle {

std::optional<PropertyListData> bookmarkData(const FileUrl& item) {
  @autoreleasepool {
    NSURL* url = [NSURL URLWithString:toNSString(item.absoluteString())];
    NSData* data = [url bookmarkDataWithOptions:0
                 includingResourceValuesForKeys:nil
                                  relativeToURL:nil
                                          error:nullptr];
    if (data == nil) return std::nullopt;
    return PropertyListData{{static_cast<const char*>(data.bytes), data.length}};
  }
}

std::string makeUniqueIdentifier() {
  @autoreleasepool {
    return toUtf8([NSUUID UUID].UUIDString);
  }
}

}  // namespace wendle
