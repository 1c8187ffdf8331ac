#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "base/property_list.h"

namespace wendle {
// A path and its text as a file URL, both fixed when the URL is made: file:///Users/u/Application%20Support/
class FileUrl {
 public:
  // Looks at the disk once: an existing directory gets a slash at the end of its URL; a plain file, a missing
  // item and a link, also one to a directory, get none. A `path` that ends in a slash is taken for a
  // directory unseen. A relative path counts from the working directory. Source: NSURL's fileURLWithPath:.
  [[nodiscard]] static FileUrl fileUrlWithPath(std::string_view path);

  // The same for what is known to be a directory: the disk is not looked at.
  [[nodiscard]] static FileUrl fileUrlWithDirectoryPath(std::string_view path);

  // Without a slash at the end, `/` itself aside.
  [[nodiscard]] const std::string& path() const { return path_; }

  [[nodiscard]] const std::string& absoluteString() const { return absoluteString_; }

 private:
  FileUrl(std::string path, std::string absoluteString)
      : path_(std::move(path)), absoluteString_(std::move(absoluteString)) {}

  std::string path_;
  std::string absoluteString_;
};

// Data that finds the item again after it was moved. None when the item does not exist. Source: NSURL,
// bookmarkDataWithOptions: with no options, no resource values and no base URL.
[[nodiscard]] std::optional<PropertyListData> bookmarkData(const FileUrl& item);
}  // namespace wendle
