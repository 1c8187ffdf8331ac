#import "dock/AFXDockShortcutManager.h"

#include "dock/dock_shortcut.h"
#include "platform/macos/foundation_values.h"

using wendle::DockShortcutChange;

static NSString* const flagKey = @"isChangingPersistenceOfShortcutInDock";

static std::optional<wendle::FileUrl> toFileUrl(NSURL* url) {
  NSString* path = url.path;
  if (path.length == 0) return std::nullopt;
  return wendle::FileUrl::fileUrlWithPath(wendle::toUtf8(path));
}

// The block outlives the call that it was given to.
static std::function<void(bool)> toCompletion(void (^block)(BOOL)) {
  if (block == nil) return {};
  void (^kept)(BOOL) = [block copy];
  return [kept](bool result) { kept(result ? YES : NO); };
}

@interface AFXDockShortcutManager ()
- (void)setIsChangingPersistenceOfShortcutInDock:(BOOL)isChanging;
@end

@implementation AFXDockShortcutManager

@synthesize isChangingPersistenceOfShortcutInDock = _isChangingPersistenceOfShortcutInDock;

+ (AFXDockShortcutManager*)sharedInstance {
  static AFXDockShortcutManager* const manager = [[AFXDockShortcutManager alloc] init];
  return manager;
}

+ (BOOL)automaticallyNotifiesObserversForKey:(NSString*)key {
  if ([key isEqualToString:flagKey]) return NO;
  return [super automaticallyNotifiesObserversForKey:key];
}

- (void)setIsChangingPersistenceOfShortcutInDock:(BOOL)isChanging {
  if (_isChangingPersistenceOfShortcutInDock == isChanging) return;
  [self willChangeValueForKey:flagKey];
  _isChangingPersistenceOfShortcutInDock = isChanging;
  [self didChangeValueForKey:flagKey];
}

- (BOOL)getPersistenceOfShortcutInDockFolderURL:(NSURL*)folderURL {
  return wendle::getPersistenceOfShortcutInDockFolderURL(toFileUrl(folderURL));
}

// What the change holds of this object keeps it alive until the flag has fallen.
- (void)changePersistenceOfShortcutInDockFolderURL:(NSURL*)folderURL
                                               add:(BOOL)add
                                        completion:(void (^)(BOOL result))completion {
  wendle::changePersistenceOfShortcutInDockFolderURL(
      toFileUrl(folderURL), add ? DockShortcutChange::add : DockShortcutChange::remove,
      toCompletion(completion),
      [self](bool isChanging) { [self setIsChangingPersistenceOfShortcutInDock:isChanging ? YES : NO]; });
}

- (NSURL*)fileURLWithFixedTrailingSlash:(NSURL*)url {
  NSString* path = url.path;
  return path.length == 0 ? nil : [NSURL fileURLWithPath:path];
}

@end
