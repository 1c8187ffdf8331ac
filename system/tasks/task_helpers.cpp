#include "system/tasks/task_helpers.h"

#include "base/text.h"

namespace wendle {
constexpr size_t maxCommandOutput = 16 * 1024 * 1024;

// One byte more than a limit tells whether the limit cuts a character in two.
static std::shared_ptr<Pipe> makePipe(size_t limit) { return std::make_shared<Pipe>(limit + 1); }

static void configure(Task& task, const std::string& executable, const std::vector<std::string>& arguments) {
  task.setExecutable(executable);
  task.setArguments(arguments);
}

Status runAndReturnError(Task& task, const std::string& executable,
                         const std::vector<std::string>& arguments) {
  configure(task, executable, arguments);
  Status status = task.launchAndReturnError();
  if (status.ok()) task.waitUntilExit();
  return status;
}

void run(Task& task, const std::string& executable, const std::vector<std::string>& arguments) {
  configure(task, executable, arguments);
  task.launch();
  task.waitUntilExit();
}

std::string runForOutput(const std::string& executable, const std::vector<std::string>& arguments) {
  Task task = makePipedTask();
  run(task, executable, arguments);
  return std::get<std::shared_ptr<Pipe>>(task.standardOutput())->readDataToEndOfFile();
}

std::string runCommand(const std::string& command) {
  const auto output = makePipe(maxCommandOutput);
  Task task;
  task.setSigpipe(Task::Sigpipe::terminates);
  task.setStandardOutput(output);
  task.setStandardError(output);
  configure(task, "/bin/zsh", {"-c", command});
  task.setStandardInput(NullStream{});
  task.launch();
  std::string text(firstBytes(output->readDataToEndOfFile(), maxCommandOutput));
  task.waitUntilExit();  // to leave no zombie; the exit status is ignored
  if (!isUtf8(text)) throw std::runtime_error("the output of `" + command + "` is not UTF-8");
  return text;
}

Task makeConsoleTask() {
  Task task;
  task.setStandardInput(std::make_shared<Pipe>());
  task.setStandardError(makePipe(maxLoggedText));
  task.setStandardOutput(FileHandle{STDOUT_FILENO});
  return task;
}

Task makePipedTask() {
  Task task = makeConsoleTask();
  task.setStandardOutput(std::make_shared<Pipe>());
  return task;
}

Status terminationError(const Task& task) {
  if (task.terminationStatus() == 0) return {};
  const auto* pipe = std::get_if<std::shared_ptr<Pipe>>(&task.standardError());
  if (pipe == nullptr) return {};
  const std::string output = (*pipe)->readDataToEndOfFile();
  const std::string_view text = firstBytes(output, maxLoggedText);
  return Error{std::string(statusErrorDomain), task.terminationStatus(),
               isUtf8(text) ? trimmed(text) : "No description"};
}
}  // namespace wendle
