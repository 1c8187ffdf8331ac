// What the library and the tools inside the Mac share: where things lie, files, property lists, the journal.
#pragma once

#include <plist/plist.h>

#include <functional>

#include "simulated_mac/simulated_mac.h"

namespace wendle::mac {
namespace fs = std::filesystem;
using Strings = std::vector<std::string>;
using Record = std::map<std::string, std::string>;

// What a real Mac does not have.
inline const std::string journalDirectory = "/.simulation/journal";
inline const std::string faultsFile = "/.simulation/faults";
inline const std::string sessionProgram = "/.simulation/session";
inline const std::string inputFile = "/.simulation/in";  // like a terminal, a stream without an end
inline const std::string realToolsDirectory = "/.simulation/real";
inline const std::string lockFile = "/.simulation/lock";
inline const std::string consoleUserFile = "/.simulation/console";  // "NAME ID" or nothing; pat without it

// What the tools keep about the user: property lists of the form {entries = (...)}; and the Dock's
// {persistent-others = (...); ...}.
inline const std::string keychainFile = home + "/Library/Keychains/login.keychain";
inline const std::string approvalsFile = home + "/Library/Application Support/com.apple.TCC/TCC.plist";
inline const std::string electionsFile =
    home + "/Library/Application Support/com.apple.pluginkit/Elections.plist";
inline const std::string jobsFile = home + "/Library/Application Support/com.apple.launchd/Jobs.plist";
inline const std::string dockFile = home + "/Library/Preferences/com.apple.dock.plist";

// Reading gives an empty text when it fails; writing throws fs::filesystem_error.
[[nodiscard]] std::string readFile(const fs::path& path);
void writeFile(const fs::path& path, std::string_view content);

// Each word with a NUL after it, so that any bytes survive.
[[nodiscard]] std::string nulTerminated(const Strings& words);
void append(Strings& words, const Strings& more);
[[nodiscard]] Strings split(std::string_view text, char end = '\0');

// Visits all that lies in the Mac whose root directory is `root`, with its path there, links as themselves;
// what holds the host's system is left out.
void walk(const fs::path& root,
          const std::function<void(const fs::directory_entry&, const std::string&)>& visit);

struct FreePlist {
  void operator()(void* node) const { plist_free(node); }
};
using Plist = std::unique_ptr<void, FreePlist>;

[[nodiscard]] Plist parsePlist(const std::string& data);  // none when it is no property list
[[nodiscard]] Plist toPlist(const Record& texts);
// In the format that the file has; in XML when there is none yet.
void writePlist(const fs::path& file, plist_t node);
[[nodiscard]] std::string toXml(plist_t node);
[[nodiscard]] std::string toText(plist_t node);  // of a string; empty for all else
[[nodiscard]] std::string toText(plist_t dictionary, const char* key);
// By key, or by index; none for what is neither dictionary nor array.
[[nodiscard]] std::vector<std::pair<std::string, plist_t>> children(plist_t node);
void removeChild(plist_t parent, const std::string& name);

// Adds an entry to the array under `key`, which is made when it is not there.
void addEntry(const fs::path& file, Plist entry, const char* key = "entries");
// The first entry with this text under `key`, if any.
enum class Find { only, andTake };
[[nodiscard]] std::optional<Record> findEntry(const fs::path& file, const char* key, const std::string& text,
                                              Find mode);

struct RunNumber {
  int inJournal = 0;  // from 0
  int ofTool = 1;     // from 1
};
// Safe when tools run at the same time.
RunNumber beginRun(const fs::path& journal, const ToolRun& run);
void endRun(const fs::path& journal, RunNumber number, const std::string& outcome);
[[nodiscard]] std::vector<ToolRun> readJournal(const fs::path& journal);
[[nodiscard]] std::string outcomeText(int waitStatus);

void writeFaults(const fs::path& file, const std::vector<Fault>& faults);
[[nodiscard]] std::vector<Fault> readFaults(const fs::path& file, const std::string& tool, int run);
// Takes the tool away that must not be there any more.
void applyAbsence(const fs::path& tool, const std::vector<Fault>& faults);
}  // namespace wendle::mac
