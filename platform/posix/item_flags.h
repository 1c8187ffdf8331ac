#pragma once

#include <sys/stat.h>

#include <string>

namespace wendle {

// What macOS keeps in an item's flags (chflags(2)) and removefile(3) heeds; none of it concerns Linux.

// The flags with which unlinkat(2) removes a directory: AT_REMOVEDIR, and another one when its contents are
// not here but with whoever syncs them. It goes unread then, so that nothing is fetched only to be removed.
[[nodiscard]] int directoryRemovalFlags(const struct stat& directory);

// Whether flags keep an entry, or the entries of a directory, from being removed by this process's user: the
// superuser's process takes off those that users set themselves.
[[nodiscard]] bool flagsForbidRemoval(const struct stat& item);

// Takes the flags "immutable" and "append only", which users set themselves, off an open directory. Only the
// superuser's process does so, and only where the system has not set its own.
void clearUserFlags(int directory, const struct stat& status);

// The same for the entry `name` of the directory `parent`; a link itself is meant. Returns whether there were
// such flags and they are off.
[[nodiscard]] bool clearUserFlagsAt(int parent, const std::string& name);

}  // namespace wendle
