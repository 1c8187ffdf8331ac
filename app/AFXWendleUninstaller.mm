#import "app/AFXWendleUninstaller.h"

#include "app/modes.h"
#include "logging/logger_configurator.h"

using wendle::Mode;

@implementation AFXWendleUninstaller

- (void)runInUpdatesMode {
  wendle::runSteps(Mode::updates);
}

- (void)runInSoftMode {
  wendle::runSteps(Mode::soft);
}

- (void)runInHardMode {
  wendle::runSteps(Mode::hard);
}

- (void)runInFullMode {
  wendle::runSteps(Mode::full);
}

- (instancetype)init {
  self = [super init];
  wendle::LoggerConfigurator::setupIssuesReporter();
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
