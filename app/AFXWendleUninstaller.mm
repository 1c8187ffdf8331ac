#import "app/AFXWendleUninstaller.h"

#include "app/wendle_uninstaller.h"

using wendle::WendleUninstaller;

@implementation AFXWendleUninstaller

- (void)runInUpdatesMode {
  WendleUninstaller::shared().runInUpdatesMode();
}

- (void)runInSoftMode {
  WendleUninstaller::shared().runInSoftMode();
}

- (void)runInHardMode {
  WendleUninstaller::shared().runInHardMode();
}

- (void)runInFullMode {
  WendleUninstaller::shared().runInFullMode();
}

- (instancetype)init {
  self = [super init];
  (void)WendleUninstaller::shared();
  return self;
}

+ (AFXWendleUninstaller*)shared {
  static AFXWendleUninstaller* const shared = [[AFXWendleUninstaller alloc] init];
  return shared;
}

@end
