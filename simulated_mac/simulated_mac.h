// A disposable Mac: a directory that becomes the root directory of a session in which the uninstaller is run.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace wendle::mac {
inline const std::string home = "/Users/pat";

struct ToolRun {
  std::string tool;                    // the path it was started by, such as /bin/launchctl
  std::vector<std::string> arguments;  // without the tool itself
  std::string outcome;                 // "exit 0", "signal 9", or empty: still running when the session ended
  std::size_t logged = 0;              // how many lines <home>/Library/Logs/Wendle held when it started
};

enum class FaultKind {
  missing,        // the tool's file is not there, from this run on
  notExecutable,  // the tool's file is there without the right to execute it, from this run on
  exits,          // says `text` on stderr and exits with `number` without doing its work
  killed,         // dies of signal `number` without doing its work
  floods,         // `number` bytes on stdout and stderr by turns, then the work; the bytes are line feeds, so
                  // that what the tool really says keeps its meaning
  notUtf8,        // bytes that are no UTF-8 on stdout and stderr, then the work
  leavesGrandchild,  // a grandchild holds the tool's streams open for `number` milliseconds, for ever if 0
  readsInput,        // reads its standard input to the end, then works
  killsProgram,      // kills the session's program, SIGKILL, and does nothing more
};

struct Fault {
  std::string tool;  // its name, such as launchctl
  int run = 1;       // the N-th run of that tool in the session, from 1
  FaultKind kind = FaultKind::missing;
  int number = 1'000'000;
  std::string text = {};
};

// A running application. It quits when asked to (SIGTERM); a stubborn one refuses.
struct ProcessPlan {
  std::string name;        // as `killall` knows it
  std::string identifier;  // `__CFBundleIdentifier`
  std::string job = {};    // the label of the launchd job whose process it is
  bool stubborn = false;
};

enum class ProcessOutcome { leftAlone, refused, quit, killed };  // refused: was asked to quit and still lives

struct SessionOptions {
  bool closesStandardStreams = false;
  bool ignoresBrokenPipes = false;  // starts with SIGPIPE ignored
  bool blocksAllSignals = false;
  std::optional<unsigned> descriptorLimit = {};
  std::vector<std::string> environment = {};  // "NAME=value"; the last of a name holds
  std::string workingDirectory = "/";
  std::vector<std::string> mounts = {};  // further ones, as bwrap(1) takes them
  bool startsProcesses = true;
  bool asRoot = false;  // the program's user is root; the applications, and what sudo starts, stay pat's
};

struct SessionResult {
  std::string outcome;  // "exit 0", "signal 6" or "timed out"
  std::string out, err;
  std::vector<std::string>
      log;  // the lines of all files in <home>/Library/Logs/Wendle, in the order of their names
  std::vector<ToolRun> journal;           // in order of start
  std::vector<ProcessOutcome> processes;  // one for each process, in the order in which they were added
};

struct SnapshotEntry {
  std::filesystem::file_type type = std::filesystem::file_type::none;
  unsigned mode = 0;
  std::string content;  // of a file; the target of a link
  friend bool operator==(const SnapshotEntry&, const SnapshotEntry&) = default;
};

// All that lies in a Mac at one moment, by path. The property lists that programs share (keychain, Dock, ...)
// are taken apart: such a file stands without its content, and each entry for itself under "FILE: NAME".
using Snapshot = std::map<std::string, SnapshotEntry>;

struct SnapshotDifference {
  std::vector<std::string> removed, added, changed;
};
[[nodiscard]] SnapshotDifference difference(const Snapshot& before, const Snapshot& after);

// Whether this file is an executable of macOS: a Mach-O or a universal file.
[[nodiscard]] bool isMacosExecutable(const std::filesystem::path& program);
// The words by which a program in a session starts the host's existing executable `program`. An executable of
// macOS is run by the program macos_program beside our own executable.
[[nodiscard]] std::vector<std::string> commandInSession(const std::filesystem::path& program);

// All paths given to it and returned by it, root() and at() excepted, are the Mac's own
// ("/Users/pat/Documents"); a path below a link is refused, so that nothing is ever written outside the root
// directory. Missing parent directories are made. Failures are std::runtime_error or
// std::filesystem::filesystem_error with a sentence for the user.
class SimulatedMac {
 public:
  // A Mac in a temporary directory, removed with the object; no link is followed then.
  [[nodiscard]] static SimulatedMac scratch();
  // A Mac that stays. `directory` must be empty or missing, and its parent must exist.
  [[nodiscard]] static SimulatedMac in(const std::filesystem::path& directory);

  [[nodiscard]] const std::filesystem::path& root() const { return *root_; }
  // The host's path of something in the Mac.
  [[nodiscard]] std::filesystem::path at(std::string_view path) const;
  // A link counts as itself, wherever it leads.
  [[nodiscard]] bool exists(std::string_view path) const;
  [[nodiscard]] std::string read(std::string_view path) const;  // empty for what is no file
  [[nodiscard]] Snapshot snapshot() const;

  void addDirectory(std::string_view path);
  void addFile(std::string_view path, std::string_view content = "");
  void addLink(std::string_view path, std::string_view target);
  // `body` is what stands between <plist> and </plist>.
  void addPropertyList(std::string_view path, const std::string& body, bool binary = false);
  void addBundle(const std::string& path, const std::string& identifier);
  // The file <home>/Library/LaunchAgents/LABEL.plist, and the job, which launchd knows.
  void addLaunchAgent(const std::string& label);
  void addKeychainItem(const std::string& label, const std::string& account = "pat");
  void addApproval(const std::string& identifier);  // of a privacy permission
  void addElection(const std::string& identifier);  // of a plug-in
  // At the end of the Dock's list. Without a URL the tile has no "_CFURLString".
  void addDockTile(const std::string& label, const std::string& url);
  void addProcess(ProcessPlan process) { processes_.push_back(std::move(process)); }
  void setFault(Fault fault) { faults_.push_back(std::move(fault)); }

  // Starts the processes, runs the host's executable `program` in the Mac, be it one of Linux or of macOS,
  // and ends everything. The journal starts anew. Throws std::runtime_error when there can be no session.
  SessionResult run(const std::filesystem::path& program, const std::vector<std::string>& arguments,
                    const SessionOptions& options = {});

 private:
  explicit SimulatedMac(std::shared_ptr<const std::filesystem::path> root);
  void installTools();

  std::shared_ptr<const std::filesystem::path> root_;
  std::vector<ProcessPlan> processes_;
  std::vector<Fault> faults_;
  std::int64_t tiles_ = 0;
};
}  // namespace wendle::mac
