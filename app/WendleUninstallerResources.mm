#import "app/WendleUninstallerResources.h"

// Marks this code: whatever bundle holds this class is ours.
@interface BundleFinder : NSObject
@end

@implementation BundleFinder
@end

@implementation WendleUninstallerResources

- (instancetype)init {
  return [super init];
}

+ (NSBundle*)bundle {
  static NSBundle* const bundle = [NSBundle bundleForClass:[BundleFinder class]];
  return bundle;
}

@end
