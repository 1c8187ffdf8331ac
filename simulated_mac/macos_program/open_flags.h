#pragma once

namespace wendle::macho {

// Flags of open(2) as this system has them; refuses those that are unknown here.
[[nodiscard]] int toHostOpenFlags(int flags);

}  // namespace wendle::macho
