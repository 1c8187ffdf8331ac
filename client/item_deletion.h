#pragma once

#include <string>
#include <string_view>

#include "platform/file_tree.h"
#include "platform/file_url.h"

namespace wendle {

inline constexpr std::string_view deleteFolderPrefix = "Delete Folder - ";  // folders and bundles
inline constexpr std::string_view deleteFilePrefix = "Delete File - ";  // files, and what is listed with them

// Deletes the item at `url`, a folder with all its contents, as removeItem() does, and logs the prefix, the
// URL and " - success", or the error. A missing item is such an error. Never fails towards the caller.
void deleteItem(const FileUrl& url, std::string_view logPrefix);

// The same for the item at `url` that was found in `tree` at the path `found`: it is deleted from there.
void deleteItem(const FileTree& tree, const std::string& found, const FileUrl& url,
                std::string_view logPrefix);

}  // namespace wendle
