// bench_starts COUNT [PROGRAM ARGUMENTS...]: runs the program, /bin/true unless told otherwise, so many
// times, as the uninstaller runs a tool.
#include <cstdlib>

#include "system/tasks/task_helpers.h"

int main(int count, char** words) {
  if (count < 2) return 2;
  for (int left = std::atoi(words[1]); left > 0; --left) {
    wendle::Task task = wendle::makeConsoleTask();
    task.setExecutable(count > 2 ? words[2] : "/bin/true");
    if (count > 3) task.setArguments({words + 3, words + count});
    task.launch();
    task.waitUntilExit();
  }
}
