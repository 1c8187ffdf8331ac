// A program that changes the Dock's tiles of a folder, for a session on the simulated Mac:
//   dock_shortcut_probe [has FOLDER | add FOLDER | remove FOLDER | add-and-wait FOLDER]...
// It prints what it is answered and how the flag is set, a line each.
#include <chrono>
#include <iostream>
#include <semaphore>
#include <string_view>

#include "dock/dock_shortcut.h"
#include "platform/queues.h"

namespace {
using wendle::DockShortcutChange;
using wendle::FileUrl;

bool flag = false;
std::counting_semaphore<> falls(0);  // of the flag

void setFlag(bool isChanging) {
  flag = isChanging;
  std::cout << "flag " << flag << "\n";
  if (!flag) falls.release();
}

void changeAndWait(const FileUrl& folder, DockShortcutChange change) {
  changePersistenceOfShortcutInDockFolderURL(folder, change, {}, setFlag);
  falls.acquire();
}

void changeWithCompletion(const FileUrl& folder) {
  const auto start = std::chrono::steady_clock::now();
  bool isDone = false;
  const auto complete = [&](bool result) {
    isDone = true;
    const bool isInTime = std::chrono::steady_clock::now() - start > std::chrono::seconds(7);
    std::cout << "completion " << result << ", flag " << flag << (isInTime ? ", in time" : ", too early")
              << "\n";
  };
  changePersistenceOfShortcutInDockFolderURL(folder, DockShortcutChange::add, complete, setFlag);
  wendle::serveMainQueueUntil([&] { return isDone; });
}
}  // namespace

int main(int argc, char** argv) {
  for (int i = 1; i + 1 < argc; i += 2) {
    const std::string_view verb = argv[i];
    const FileUrl folder = FileUrl::fileUrlWithPath(argv[i + 1]);
    if (verb == "has") std::cout << "has " << getPersistenceOfShortcutInDockFolderURL(folder) << "\n";
    if (verb == "add") changeAndWait(folder, DockShortcutChange::add);
    if (verb == "remove") changeAndWait(folder, DockShortcutChange::remove);
    if (verb == "add-and-wait") changeWithCompletion(folder);
  }
  return 0;
}
