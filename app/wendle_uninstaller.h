#pragma once

namespace wendle {

// The uninstaller and its four modes; it holds no state. A mode is one fixed sequence of steps; it returns
// when the last has returned. No step reports a failure here: each logs its own, and the next one runs
// whatever happened.
class WendleUninstaller {
 public:
  // Connects the issue reporter to the log and enables it; every instance does.
  WendleUninstaller();

  // Deletes the search extension's application and preferences, kills it, and resets its permissions. Deletes
  // all launch agents of the client too, after unloading them, with its Quick Look generator, and has its
  // Finder Sync extension ignored.
  static void runInUpdatesMode();

  // Takes the client out: deletes /Applications/Wendle.app, the copies of the helper applications that
  // Spotlight finds, launch agents, containers, preferences, keychain items and support folders, and quits
  // what runs. Keeps the vendor's applications folder, and copies on other volumes, in build folders and in
  // backups.
  static void runInSoftMode();

  // The same, and deletes the vendor's applications folder.
  static void runInHardMode();

  // The same, and deletes every copy that Spotlight finds: those on other volumes and in backups as well.
  static void runInFullMode();
};

}  // namespace wendle
