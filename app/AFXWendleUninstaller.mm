#import "app/AFXWendleUninstaller.h"

#include "app/argument_dispatch.h"
#include "app/wendle_uninstaller.h"

using wendle::WendleUninstaller;

@implementation AFXWendleUninstaller

- (void)runInUpdatesMode {
  WendleUninstaller::runInUpdatesMode();
}

- (void)runInSoftMode {
  WendleUninstaller::runInSoftMode();
}

- (void)runInHardMode {
  WendleUninstaller::runInHardMode();
}

- (void)runInFullMode {
  WendleUninstaller::runInFullMode();
}

- (instancetype)init {
  self = [super init];
  static_cast<void>(WendleUninstaller());
  return self;
}

+ (AFXWendleUninstaller*)shared {
  static AFXWendleUninstaller* const shared = [[AFXWendleUninstaller alloc] init];
  return shared;
}

@end

namespace wendle {

void runMode(Mode mode) {
  AFXWendleUninstaller* shared = [AFXWendleUninstaller shared];
  switch (mode) {
    case Mode::updates:
      return [shared runInUpdatesMode];
    case Mode::soft:
      return [shared runInSoftMode];
    case Mode::hard:
      return [shared runInHardMode];
    case Mode::full:
      return [shared runInFullMode];
  }
}

}  // namespace wendle
