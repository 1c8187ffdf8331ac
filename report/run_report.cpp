#include "report/run_report.h"

#include <sys/stat.h>

#include <cerrno>
#include <charconv>
#include <iterator>
#include <set>
#include <string_view>

#include "app/modes.h"
#include "client/client_locations.h"
#include "client/client_removal.h"
#include "platform/file_url.h"

namespace wendle {
namespace {
constexpr std::string_view success = " - success";

// What stands between `prefix` and `suffix`; none when `text` is not of that form.
std::optional<std::string> between(std::string_view text, std::string_view prefix, std::string_view suffix) {
  if (text.size() < prefix.size() + suffix.size() || !text.starts_with(prefix) || !text.ends_with(suffix)) {
    return std::nullopt;
  }
  return std::string(text.substr(prefix.size(), text.size() - prefix.size() - suffix.size()));
}

// None when the line is not the first of a run.
std::optional<Mode> startedMode(const LogRecord& first) {
  for (const ModeSwitch& entry : modeSwitches) {
    if (first.text == startLine(entry.mode)) return entry.mode;
  }
  return std::nullopt;
}

// The item of a line of the deleting steps: "Delete Folder - ITEM" and its siblings.
std::optional<std::string> deletedItem(std::string_view text, std::string_view suffix) {
  for (const std::string_view prefix : {deleteFolderPrefix, deleteFilePrefix}) {
    if (auto item = between(text, prefix, suffix)) return item;
  }
  if (auto item = between(text, "Delete Keychain Item - ", suffix)) return "keychain item " + *item;
  return std::nullopt;
}

// What a line says of a tool that ran to its end.
std::optional<std::string> toolRun(std::string_view text) {
  if (auto command = between(text, "Run `", "` - success")) return command;
  if (auto path = between(text, "Remove /", " - finished")) return "rm -rf /" + *path;
  for (const std::string_view prefix : {"Reset permissions for ", "Removed defaults for "}) {
    if (text.starts_with(prefix)) return std::string(text);
  }
  if (text == "Remove dock folder - removing dock item") return "Remove dock item";
  return std::nullopt;
}

// The removed items. None is kept that lies in another one, so only an item's predecessor in the sort order
// can contain it: one lookup, however many there are.
class RemovedItems {
 public:
  void add(const std::string& item) {
    const std::string directory = asDirectory(item);
    if (holds(item)) return;
    auto next = directories_.lower_bound(directory);
    while (next != directories_.end() && next->starts_with(directory)) next = directories_.erase(next);
    directories_.insert(next, directory);
  }

  // As itself, or in a directory.
  bool holds(const std::string& item) const {
    const std::string directory = asDirectory(item);
    const auto next = directories_.upper_bound(directory);
    return next != directories_.begin() && directory.starts_with(*std::prev(next));
  }

 private:
  static std::string asDirectory(const std::string& item) { return item.ends_with('/') ? item : item + "/"; }

  std::set<std::string> directories_;
};

class Reader {
 public:
  explicit Reader(RunReport& report) : report_(report) {}

  void read(const LogRecord& record) {
    if (record.kind == RecordKind::error) return readError(record.text);
    if (record.kind == RecordKind::failure) return fail(record.text);
    if (record.logger == "module" || record.text.starts_with("Failed to ")) return fail(record.text);
    if (auto item = deletedItem(record.text, success)) {
      removed_.add(*item);
      report_.removed.push_back(*item);
    } else if (auto tool = toolRun(record.text)) {
      report_.toolsRun.push_back(*tool);
    } else if (record.text == "Remove dock folder - no dock item found") {
      report_.notThere.emplace_back("the client's tile in the Dock");
    }
  }

 private:
  // "MESSAGE: Error Domain=..."
  void readError(const std::string& text) {
    const size_t colon = text.find(": Error Domain=");
    const std::string message = text.substr(0, colon);
    const auto item = deletedItem(message, "");
    const std::string cause = colon == std::string::npos ? "" : text.substr(colon + 2);
    if (!item || !cause.starts_with("Error Domain=NSPOSIXErrorDomain Code=2 ")) {
      report_.failed.push_back({item.value_or(message), cause});
    } else if (!removed_.holds(*item)) {
      report_.notThere.push_back(*item);
    }
  }

  void fail(const std::string& text) {
    const size_t colon = text.find(": ");
    report_.failed.push_back(
        {text.substr(0, colon), colon == std::string::npos ? "" : text.substr(colon + 2)});
  }

  RunReport& report_;
  RemovedItems removed_;
};

// Whether `line` reports the deletion of a file whose path ends in the last two components of `path`: the log
// may be another user's, with another home directory.
bool isDeletionOf(const std::string& path, std::string_view line) {
  const std::string_view message = line.substr(0, line.find(": Error Domain="));
  const auto item = deletedItem(message, message.ends_with(success) ? success : "");
  const std::string url = FileUrl::fileUrlWithPath(path).absoluteString();
  return item && item->ends_with(url.substr(url.rfind('/', url.rfind('/') - 1)));
}

// The soft and hard modes say goodbye; the other two end with the last item that they delete.
bool isLastLine(Mode mode, const LogRecord& last) {
  if (last.logger == "module") return false;
  if (mode == Mode::full) return isDeletionOf(clientLocations().preferenceFilePaths.back(), last.text);
  if (mode != Mode::updates) return last.text.starts_with("Removal Completed - ");
  return isDeletionOf(clientLocations().searchExtensionPreferencesPath, last.text) ||
         last.text.find("/WendleExtension.app") != std::string::npos;
}

// The path in a file URL of the log; empty for any other item.
std::string pathInUrl(std::string_view url) {
  constexpr std::string_view scheme = "file://";
  if (!url.starts_with(scheme)) return {};
  std::string path;
  for (url.remove_prefix(scheme.size()); !url.empty(); url.remove_prefix(1)) {
    unsigned char byte = 0;
    const char* code = url.data() + 1;
    const bool isEscaped =
        url.front() == '%' && url.size() > 2 && std::from_chars(code, code + 2, byte, 16).ptr == code + 2;
    path += isEscaped ? static_cast<char>(byte) : url.front();
    if (isEscaped) url.remove_prefix(2);
  }
  while (path.size() > 1 && path.ends_with('/')) path.pop_back();  // a link is not to be followed
  return path;
}

bool isGone(const FailedItem& failed) {
  const std::string path = pathInUrl(failed.item);
  struct stat status {};
  return !path.empty() && ::lstat(path.c_str(), &status) != 0 && errno == ENOENT;
}
}  // namespace

void recheck(RunReport& report) {
  report.removedLater.emplace();
  for (const FailedItem& failed : report.failed) {
    if (isGone(failed)) report.removedLater->push_back(failed.item);
  }
  std::erase_if(report.failed, isGone);
}

std::optional<RunReport> makeReport(const LogText& log) {
  const auto mode = startedMode(log.records.front());
  if (!mode) return std::nullopt;
  RunReport report;
  report.mode = modeSwitch(*mode);
  report.start = log.records.front().time;
  report.duration = log.records.back().time - report.start;
  Reader reader(report);
  for (const LogRecord& record : log.records) reader.read(record);
  for (const size_t line : log.unreadableLines) {
    report.failed.push_back({"line " + std::to_string(line) + " of the log", "is no record"});
  }
  report.reachedEnd = !log.isCutOff && isLastLine(*mode, log.records.back());
  return report;
}
}  // namespace wendle
