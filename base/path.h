#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace wendle {
// The rules of Foundation's path strings [D]. They look at the text only, never at the disk, and normalise
// neither `.` nor `..`.

// `/a/b` and `/a/b/` give `/`, `a`, `b`; empty components are dropped.
[[nodiscard]] std::vector<std::string> pathComponents(std::string_view path);

// What follows the last dot of the last component, trailing slashes aside. None (empty) for a dot in front
// (`.backupdb`), at the end (`a.`), or with a blank behind it (`a.b c`).
[[nodiscard]] std::string pathExtension(std::string_view path);

// `/a/b` gives `/a`; `/a`, `/a/` and `/` give `/`; `a` gives the empty text.
[[nodiscard]] std::string deletingLastPathComponent(std::string_view path);
}  // namespace wendle
