#include "platform/posix/item_flags.h"

#include <fcntl.h>

namespace wendle {

int directoryRemovalFlags(const struct stat& /*directory*/) { return AT_REMOVEDIR; }
bool flagsForbidRemoval(const struct stat& /*item*/) { return false; }
void clearUserFlags(int /*directory*/, const struct stat& /*status*/) {}
bool clearUserFlagsAt(int /*parent*/, const std::string& /*name*/) { return false; }

}  // namespace wendle
