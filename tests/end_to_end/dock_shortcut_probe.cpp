// A program that uses the Dock shortcut manager, for a session on the simulated Mac:
//   dock_shortcut_probe [has FOLDER | add FOLDER | remove FOLDER | add-and-wait FOLDER]...
// It prints what the manager answers and how its flag moves, a line each.
#include <chrono>
#include <iostream>
#include <semaphore>
#include <string_view>

#include "dock/dock_shortcut_manager.h"
#include "platform/queues.h"

namespace {

using wendle::DockShortcutManager;
using wendle::FileUrl;

double secondsSince(std::chrono::steady_clock::time_point start) {
  return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// One for each fall of the flag that the observer was told of.
std::counting_semaphore<> falls(0);

void tellOfFlag() {
  const bool isChanging = DockShortcutManager::sharedInstance().isChangingPersistenceOfShortcutInDock();
  std::cout << "flag " << isChanging << "\n";
  if (!isChanging) falls.release();
}

void changeAndWait(const FileUrl& folder, DockShortcutManager::Change change) {
  DockShortcutManager::sharedInstance().changePersistenceOfShortcutInDockFolderURL(folder, change, {});
  falls.acquire();
}

void changeWithCompletion(const FileUrl& folder) {
  DockShortcutManager& manager = DockShortcutManager::sharedInstance();
  const auto start = std::chrono::steady_clock::now();
  bool isDone = false;
  manager.changePersistenceOfShortcutInDockFolderURL(
      folder, DockShortcutManager::Change::add, [&](bool result) {
        isDone = true;
        std::cout << "completion " << result << ", flag " << manager.isChangingPersistenceOfShortcutInDock()
                  << (secondsSince(start) > 7 ? ", in time" : ", too early") << "\n";
      });
  wendle::serveMainQueueUntil([&] { return isDone; });
  falls.acquire();
}

}  // namespace

int main(int argc, char** argv) {
  DockShortcutManager& manager = DockShortcutManager::sharedInstance();
  manager.observeFlag(tellOfFlag);
  for (int i = 1; i + 1 < argc; i += 2) {
    const std::string_view verb = argv[i];
    const FileUrl folder = FileUrl::fileUrlWithPath(argv[i + 1]);
    if (verb == "has") std::cout << "has " << manager.getPersistenceOfShortcutInDockFolderURL(folder) << "\n";
    if (verb == "add") changeAndWait(folder, DockShortcutManager::Change::add);
    if (verb == "remove") changeAndWait(folder, DockShortcutManager::Change::remove);
    if (verb == "add-and-wait") changeWithCompletion(folder);
  }
  return 0;
}
