#include "client/item_deletion.h"

#include "logging/uninstaller_logger.h"

namespace wendle {
namespace {

void logDeletion(const Status& status, const FileUrl& url, std::string_view logPrefix) {
  const std::string message = std::string(logPrefix) + url.absoluteString();
  if (status.ok()) {
    uninstallerLogger().log(LogLevel::progress, message + " - success");
  } else {
    uninstallerLogger().log(status.error(), message);
  }
}

}  // namespace

void deleteItem(const FileUrl& url, std::string_view logPrefix) {
  logDeletion(removeItem(url.path()), url, logPrefix);
}

void deleteItem(const FileTree& tree, const std::string& found, const FileUrl& url,
                std::string_view logPrefix) {
  logDeletion(tree.removeItem(found), url, logPrefix);
}

}  // namespace wendle
