#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

/// The uninstaller and its four modes. A mode runs to its end on the calling thread. No step reports a
/// failure: each logs its own, and the next one runs whatever happened.
__attribute__((visibility("default")))
@interface AFXWendleUninstaller : NSObject

/// Deletes the search extension's application and preferences, kills it, and resets its permissions. Deletes
/// all launch agents of the client too, after unloading them, with its Quick Look generator, and has its
/// Finder Sync extension ignored.
- (void)runInUpdatesMode;

/// Takes the client out: deletes /Applications/Wendle.app, the copies of the helper applications that
/// Spotlight finds, launch agents, containers, preferences, keychain items and support folders, and quits
/// what runs. Keeps the vendor's applications folder, and copies on other volumes, in build folders and in
/// backups.
- (void)runInSoftMode;

/// The same, and deletes the vendor's applications folder.
- (void)runInHardMode;

/// The same, and deletes every copy that Spotlight finds: those on other volumes and in backups as well.
- (void)runInFullMode;

/// Connects the issue reporter to the log and enables it.
- (instancetype)init;

/// The one instance that the command line uses; made on first use.
@property(class, readonly, nonatomic) AFXWendleUninstaller* shared;

@end

NS_ASSUME_NONNULL_END
