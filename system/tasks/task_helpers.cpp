#include "system/tasks/task_helpers.h"

#include "base/text.h"

namespace wendle {
namespace {

constexpr size_t maxCommandOutput = 16 * 1024 * 1024;

// One byte more than a limit tells whether the limit cuts a character in two.
std::shared_ptr<Pipe> makePipe(size_t limit) { return std::make_shared<Pipe>(limit + 1); }

}  // namespace

std::string runCommand(const std::string& command) {
  const auto output = makePipe(maxCommandOutput);
  Task task;
  task.setSigpipe(Task::Sigpipe::terminates);
  task.setStandardOutput(output);
  task.setStandardError(output);
  task.setArguments({"-c", command});
  task.setExecutable("/bin/zsh");
  task.setStandardInput(NullStream{});
  task.launch();
  std::string text(firstBytes(output->readDataToEndOfFile(), maxCommandOutput));
  task.waitUntilExit();  // only to leave no zombie; the status is nobody's business
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

std::optional<Error> terminationError(const Task& task) {
  if (task.terminationStatus() == 0) return std::nullopt;
  const auto* pipe = std::get_if<std::shared_ptr<Pipe>>(&task.standardError());
  if (pipe == nullptr) return std::nullopt;
  const std::string output = (*pipe)->readDataToEndOfFile();
  const std::string_view text = firstBytes(output, maxLoggedText);
  return Error{std::string(statusErrorDomain), task.terminationStatus(),
               isUtf8(text) ? trimmed(text) : "No description"};
}

}  // namespace wendle
