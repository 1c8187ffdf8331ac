#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "base/error.h"

namespace wendle {
enum class ItemKind { file, directory, link, unknown };  // unknown: it may not be looked at

// Why something cannot be removed: the error that the removal would report, and the item it would report it
// of.
struct RemovalObstacle {
  Error error;
  std::string path;
};

// What removeItem() would do to an item.
struct RemovalForecast {
  ItemKind kind = ItemKind::file;
  std::uint64_t size = 0;                   // of the plain files that it holds, in bytes; of a file its own
  std::optional<RemovalObstacle> obstacle;  // the first; none: all of the item would go
};

// Foretells what removeItem() would do to the item at `path` for this process's user; none when nothing is
// there. Reads only: no link in the item is followed, no other volume entered, and nothing is opened but
// directories. Right as long as nobody changes the item meanwhile, with two exceptions: a directory that may
// not be read counts as one that holds something, and what the system asks its user's consent for (macOS's
// privacy protection) cannot be asked beforehand [I].
[[nodiscard]] std::optional<RemovalForecast> forecastRemoval(const std::string& path);

// Whether removeItem() for `item`, a directory, would come to `path`, which lies below it: every directory
// between them can be listed, and none is on another volume.
[[nodiscard]] bool isReachedByRemoval(const std::string& item, const std::string& path);
}  // namespace wendle
