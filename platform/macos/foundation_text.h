#pragma once

#import <Foundation/Foundation.h>

#include <string>
#include <string_view>

namespace wendle {

// Text as Foundation has it. Never nil: bytes that are no UTF-8 are read as ISO Latin 1, which knows every
// byte.
[[nodiscard]] NSString* foundationText(std::string_view text);

// UTF-8; empty for nil.
[[nodiscard]] std::string textOf(NSString* text);

}  // namespace wendle
