#include "platform/folder_bookmark.h"

#import <Foundation/Foundation.h>

#include "platform/macos/foundation_text.h"

namespace wendle {

std::optional<PropertyListData> bookmarkData(const FileUrl& item) {
  @autoreleasepool {
    NSURL* url = [NSURL URLWithString:foundationText(item.absoluteString())];
    NSData* data = [url bookmarkDataWithOptions:0
                 includingResourceValuesForKeys:nil
                                  relativeToURL:nil
                                          error:nullptr];
    if (data == nil) return std::nullopt;
    return PropertyListData{{static_cast<const char*>(data.bytes), data.length}};
  }
}

}  // namespace wendle
