#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

/// The uninstaller and its four modes. A mode runs to its end on the calling thread. No step reports a
/// failure: each logs its own, and the next one runs whatever happened.
__attribute__((visibility("default")))
@interface AFXWendleUninstaller : NSObject

/// Removes the search extension's traces only.
- (void)runInUpdatesMode;

/// Keeps applications: the vendor's applications folder, and copies on other volumes, in build folders and in
/// backups.
- (void)runInSoftMode;

/// Uninstalls completely, copies on other volumes, in build folders and in backups aside.
- (void)runInHardMode;

/// Uninstalls completely, with every copy of the applications that Spotlight finds.
- (void)runInFullMode;

/// The first instance connects the issue reporter to the log.
- (instancetype)init;

/// The one instance that the command line uses; made on first use.
@property(class, readonly, nonatomic) AFXWendleUninstaller* shared;

@end

NS_ASSUME_NONNULL_END
