#include "platform/folder_bookmark.h"

#include "platform/file_presence.h"

namespace wendle {

// Linux has no bookmarks: bytes that name the item.
std::optional<PropertyListData> bookmarkData(const FileUrl& item) {
  if (!fileExists(item.path())) return std::nullopt;
  return PropertyListData{"book" + item.path()};
}

}  // namespace wendle
