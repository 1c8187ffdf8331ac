#include "course.h"

#include <map>
#include <set>

namespace wendle::test {
namespace {

// The product can tell nobody that one of these does not start.
const std::set<std::string> neededTools{"pluginkit", "mdfind", "security", "zsh"};

// What the log says of the others; the last argument stands for the mark.
const std::map<std::string, std::string> failedStarts{
    {"launchctl unload", "[error] uninstaller: Failed to run `launchctl unload -w *`"},
    {"launchctl remove", "[error] uninstaller: Run `launchctl remove *`"},
    {"tccutil reset", "[1] uninstaller: Failed to reset permissions for *"},
    {"defaults remove", "[1] uninstaller: Failed to remove defaults for *"},
    {"rm -rf", "[4] uninstaller: Failed to remove *"}};

bool isMissing(const Fault& fault) { return fault.kind == FaultKind::missing; }
bool isAway(const Fault& fault) { return isMissing(fault) || fault.kind == FaultKind::notExecutable; }
bool isLazy(const Fault& fault) { return fault.kind == FaultKind::exits || fault.kind == FaultKind::killed; }

std::string startError(const Fault& fault) {
  const char* error = isMissing(fault) ? R"(2 "No such file or directory")" : R"(13 "Permission denied")";
  return std::string(": Error Domain=NSPOSIXErrorDomain Code=") + error;
}

class Editor {
 public:
  Editor(const CleanRun& clean, std::size_t at, const Fault& fault)
      : tools_(clean.tools),
        at_(at),
        fault_(fault),
        log_(clean.seen.log),
        commands_(commandsOf(clean.tools)) {
    if (isAway(fault)) takeAway();
    if (isLazy(fault)) skipWork();
    if (fault.kind == FaultKind::notUtf8) spoilAnswer();
  }

  Course course() {
    for (Lines* lines : {&log_, &commands_}) std::erase(*lines, cut_);
    return {log_, commands_, outcome_};
  }

 private:
  const mac::ToolRun& tool() const { return tools_[at_]; }
  // The line that the log has of a run that took place; the first after the run's start.
  std::string& lineOf(std::size_t run) { return log_[tools_[run].logged]; }
  // The run of the shell that a run for the Dock belongs to.
  std::size_t shellRun() const { return nameOf(tool()) == "zsh" ? at_ : at_ - 1; }
  const std::string& commandLine() const { return tools_[shellRun()].arguments.at(1); }

  void takeAway() {
    const std::string name = nameOf(tool());
    if (neededTools.contains(name))
      return endBefore(at_, "launch path not accessible: " + tool().tool + startError(fault_));
    const std::string trouble = isMissing(fault_) ? "command not found" : "permission denied";
    if (name == "defaults" && isOfShell(tool())) failSearch("zsh:1: " + trouble + ": defaults");
    for (std::size_t run = at_; run < tools_.size(); ++run) {
      if (nameOf(tools_[run]) == name) failStart(run);
    }
  }

  void failStart(std::size_t run) {
    commands_[run] = cut_;
    const Lines& arguments = tools_[run].arguments;
    const auto text = failedStarts.find(nameOf(tools_[run]) + " " + arguments.at(0));
    if (text == failedStarts.end()) return;
    lineOf(run) = text->second + startError(fault_);
    lineOf(run).replace(lineOf(run).find('*'), 1, arguments.back());
  }

  void skipWork() {
    const std::string name = nameOf(tool());
    if (name == "mdfind") cutFoundCopies();
    if (name == "security") failLabel();
    if (name == "zsh") commands_[at_ + 1] = cut_;
    if (isOfShell(tool()) && commandLine().starts_with("defaults")) failSearch(fault_.text);
  }

  void spoilAnswer() {
    if (nameOf(tool()) == "mdfind") cutFoundCopies();
    if (!isOfShell(tool())) return;
    std::string command = commandLine();
    if (const auto slash = command.find('\\'); slash != std::string::npos) command.insert(slash, 1, '\\');
    endBefore(shellRun() + 2, "the output of `" + command + "` is not UTF-8");
  }

  void cutFoundCopies() {
    for (std::size_t i = tool().logged; i < tools_.at(at_ + 1).logged; ++i) {
      if (log_[i].find(" instances of Wendle") != std::string::npos) return;
      log_[i] = cut_;
    }
  }

  // Nothing more is done about the label; that is told of a deletion only.
  void failLabel() {
    const auto isDeletion = [&](std::size_t run) {
      return tools_[run].arguments.at(0) == "delete-generic-password";
    };
    const std::string deletion = lineOf(at_);
    for (std::size_t run = at_; run < tools_.size(); ++run) {
      if (tools_[run].arguments.at(2) != tool().arguments[2]) continue;
      if (isDeletion(run)) lineOf(run) = cut_;
      if (run > at_) commands_[run] = cut_;
    }
    if (!isDeletion(at_)) return;
    lineOf(at_) = "[error]" + deletion.substr(3, deletion.rfind(" - success") - 3) +
                  ": Error Domain=NSOSStatusErrorDomain Code=" + std::to_string(fault_.number) + " \"" +
                  fault_.text + "\"";
  }

  // The Dock is left alone.
  void failSearch(const std::string& answer) {
    lineOf(at_) = answer.empty() ? "[1] uninstaller: Remove dock folder - no dock item found"
                                 : "[4] uninstaller: Invalid dock item location: " + answer;
    for (std::size_t run = at_ + 1; run < tools_.size(); ++run) {
      if (isOfShell(tools_[run])) commands_[run] = cut_;
    }
  }

  void endBefore(std::size_t run, const std::string& cause) {
    commands_.resize(run);
    log_.resize(tool().logged);
    log_.push_back("[1] module: Ended by an uncaught exception: " + cause +
                   " - newest log file: file:///Users/pat/Library/Logs/Wendle/LOGFILE");
    outcome_ = "signal 6";
  }

  const std::string cut_ = "(cut)";
  const std::vector<mac::ToolRun>& tools_;
  const std::size_t at_;
  const Fault& fault_;
  Lines log_, commands_;
  std::string outcome_ = "exit 0";
};

}  // namespace

Course courseWith(const Fault& fault, std::size_t at, const CleanRun& clean) {
  return Editor(clean, at, fault).course();
}

}  // namespace wendle::test
