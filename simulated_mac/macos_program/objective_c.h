// The program's Objective-C: GCC's runtime stands for macOS's.
#pragma once

#include <string>

#include "simulated_mac/macos_program/image.h"

namespace wendle::macho {
// The class of an import such as _OBJC_CLASS_$_NSString, or its metaclass; null when there is none.
[[nodiscard]] const void* findClass(const std::string& import);

// Tells the runtime the image's selectors, classes and categories. To be called when the image's pointers are
// set and all of it can still be written.
void registerObjectiveC(const Image& image);

// Whatever GNUstep must be told before the first image is loaded.
void startFoundation();

// Of the current thread: what is autoreleased while this lives is released with it.
class AutoreleasePool {
 public:
  AutoreleasePool();
  AutoreleasePool(const AutoreleasePool&) = delete;
  AutoreleasePool& operator=(const AutoreleasePool&) = delete;
  ~AutoreleasePool();

 private:
  void* pool_;
};
}  // namespace wendle::macho
