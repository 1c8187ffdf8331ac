#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

/// Where the program's resources lie.
__attribute__((visibility("default")))
@interface WendleUninstallerResources : NSObject

- (instancetype)init;

/// The bundle that holds this code; found once and kept.
@property(class, readonly, nonatomic) NSBundle* bundle;

@end

NS_ASSUME_NONNULL_END
