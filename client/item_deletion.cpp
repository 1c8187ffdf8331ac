#include "client/item_deletion.h"

#include <string>

#include "logging/uninstaller_logger.h"
#include "platform/item_removal.h"

namespace wendle {

void deleteItem(const FileUrl& url, std::string_view logPrefix) {
  const auto error = removeItem(url.path());
  const std::string message = std::string(logPrefix) + url.absoluteString();
  if (error) {
    uninstallerLogger().log(*error, message);
  } else {
    uninstallerLogger().log(LogLevel::progress, message + " - success");
  }
}

}  // namespace wendle
