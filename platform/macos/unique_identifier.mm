#include "platform/unique_identifier.h"

#import <Foundation/Foundation.h>

#include "platform/macos/foundation_text.h"

namespace wendle {

std::string makeUniqueIdentifier() {
  @autoreleasepool {
    return textOf([NSUUID UUID].UUIDString);
  }
}

}  // namespace wendle
