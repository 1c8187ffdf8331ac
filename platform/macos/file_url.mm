#include "platform/file_url.h"

#import <Foundation/Foundation.h>

#include "base/text.h"
#include "platform/files.h"
#include "platform/macos/foundation_values.h"

namespace wendle {
// A path that is no UTF-8 has no NSString: its bytes are escaped one by one [I].
static NSURL* toUrl(const std::string& path, bool isDirectory) {
  return [NSURL fileURLWithFileSystemRepresentation:path.c_str()
                                        isDirectory:isDirectory ? YES : NO
                                      relativeToURL:nil];
}

// The bytes as they were given: a file system may tell composed names from decomposed ones [D].
static std::string toPath(NSURL* url, std::string_view given) {
  std::string path = given.starts_with('/') ? std::string(given) : toUtf8(url.path);
  while (path.size() > 1 && path.ends_with('/')) path.pop_back();
  return path;
}

FileUrl FileUrl::fileUrlWithPath(std::string_view path) {
  @autoreleasepool {
    const std::string bytes(path);
    NSURL* url = isUtf8(path) ? [NSURL fileURLWithPath:toNSString(path)]
                              : toUrl(bytes, path.ends_with('/') || isDirectoryItself(bytes));
    return {toPath(url, path), toUtf8(url.absoluteString)};
  }
}

FileUrl FileUrl::fileUrlWithDirectoryPath(std::string_view path) {
  @autoreleasepool {
    NSURL* url = isUtf8(path) ? [NSURL fileURLWithPath:toNSString(path) isDirectory:YES]
                              : toUrl(std::string(path), true);
    return {toPath(url, path), toUtf8(url.absoluteString)};
  }
}

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
}  // namespace wendle
