#pragma once

#import <Foundation/Foundation.h>

NS_ASSUME_NONNULL_BEGIN

/// Manages a folder's tile, labelled "Wendle", among the Dock's persistent other items, by editing the Dock's
/// own preferences and restarting it. Each instance has a flag and observers of its own.
__attribute__((visibility("default")))
@interface AFXDockShortcutManager : NSObject {
 @private
  BOOL _isChangingPersistenceOfShortcutInDock;
}

/// The one instance, made on the first call; safe from any thread.
+ (AFXDockShortcutManager*)sharedInstance;

/// Whether a change is under way. Observable by key-value observing; setting the value it has already sends
/// nothing. Notifications come on whatever thread changes it. With overlapping changes it becomes NO when the
/// first of them ends.
@property(readonly, nonatomic) BOOL isChangingPersistenceOfShortcutInDock;

/// Whether the Dock has a tile of the folder: one whose URL is the folder's to the letter.
- (BOOL)getPersistenceOfShortcutInDockFolderURL:(NSURL*)folderURL;

/// Makes the folder's tile the first one, or takes its first tile out; returns at once. The Dock is restarted
/// at least 2 seconds after its preferences were written, also when nothing changed. `completion` is called
/// with YES on the main queue 5 seconds after that; the flag falls just before, or without a completion right
/// after the restart.
///
/// Adding a folder that does not exist ends the process by an exception, before anything is written.
- (void)changePersistenceOfShortcutInDockFolderURL:(NSURL*)folderURL
                                               add:(BOOL)add
                                        completion:(nullable void (^)(BOOL result))completion;

/// The URL made anew from its path, with a slash at the end when that is an existing directory; nil for a URL
/// without a path.
- (nullable NSURL*)fileURLWithFixedTrailingSlash:(NSURL*)url;

@end

NS_ASSUME_NONNULL_END
