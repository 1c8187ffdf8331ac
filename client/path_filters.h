#pragma once

#include "platform/file_url.h"

namespace wendle {

// Tells copies of the client that somebody keeps on purpose. None of the tests follows or changes anything.

// Whether the item lies in, or is, a folder whose name ends in ".backupdb", in any letter case.
[[nodiscard]] bool isInBackupDatabase(const FileUrl& item);

// Whether a directory "_CCC SafetyNet" lies in the item or in a folder above it; the root folder is not
// looked at.
[[nodiscard]] bool isInSafetyNetFolder(const FileUrl& item);

// Whether the item lies in, or is, an existing directory whose name ends in ".wrp" and a number in plain
// decimal text: x.wrp7 and x.wrp-2, not x.wrp07. The lowercased path is what must exist, so on a
// case-sensitive volume a path with capitals is not found.
[[nodiscard]] bool isInNumberedWrpFolder(const FileUrl& item);

}  // namespace wendle
