// bench_starts COUNT: runs /bin/true so many times, as the uninstaller runs a tool.
#include <cstdlib>

#include "system/tasks/task_helpers.h"

int main(int count, char** words) {
  if (count != 2) return 2;
  for (int left = std::atoi(words[1]); left > 0; --left) {
    wendle::Task task = wendle::makeConsoleTask();
    task.setExecutable("/bin/true");
    task.launch();
    task.waitUntilExit();
  }
}
