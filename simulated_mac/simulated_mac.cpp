#include "simulated_mac/simulated_mac.h"

#include <cstdlib>
#include <stdexcept>

#include "simulated_mac/shared.h"

namespace wendle::mac {
namespace {
std::string framed(const std::string& body) { return "<plist>" + body + "</plist>"; }

// A tile as the Dock writes it; the bookmark data has its usual first bytes and length [D].
const std::string tile = framed(
    R"(<dict><key>tile-data</key><dict>
    <key>arrangement</key><integer>2</integer><key>book</key><data>Ym9va5wCAAAAAAQQMAAA)" +
    std::string(872, 'A') + R"(</data><key>displayas</key><integer>1</integer><key>file-data</key><dict>
    <key>_CFURLStringType</key><integer>15</integer></dict><key>file-type</key><integer>2</integer>
    <key>showas</key><integer>2</integer></dict><key>tile-type</key><string>directory-tile</string></dict>)");

// Ours; the host's under our recorder; the host's.
const Strings simulatedTools = split(
    "/bin/launchctl /usr/bin/pluginkit /usr/bin/tccutil /usr/bin/defaults /usr/bin/security /usr/bin/mdfind "
    "/usr/bin/killall /usr/libexec/PlistBuddy /usr/sbin/scutil /usr/bin/sudo",
    ' ');
const Strings recordedTools = {"/bin/zsh", "/bin/rm"};
const Strings linkedTools = {"/usr/bin/grep", "/usr/bin/awk", "/usr/bin/head",
                             "/usr/bin/env",  "/usr/bin/id",  "/bin/sh"};

// A tool of the host as the Mac sees it. Debian's own links are absolute and would break there.
std::string hostTool(const std::string& tool) {
  const fs::path file = "/usr/bin" / fs::path(tool).filename();
  if (!fs::exists(file)) throw std::runtime_error(tool + " is not installed.");
  return "/host" + fs::canonical(file).string();
}

// Follows no link, and is not stopped by directories that nobody may read.
void removeTree(const fs::path* directory) {
  std::error_code ignored;
  fs::recursive_directory_iterator item(*directory, ignored);
  for (; item != fs::recursive_directory_iterator(); item.increment(ignored)) {
    if (item->is_symlink(ignored) || !item->is_directory(ignored)) continue;
    fs::permissions(item->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
  }
  fs::remove_all(*directory, ignored);
  delete directory;
}
}  // namespace

SimulatedMac SimulatedMac::scratch() {
  std::error_code error;
  std::string directory = fs::canonical(fs::temp_directory_path(error), error) / "simulated-mac-XXXXXX";
  if (error) throw std::runtime_error("TMPDIR names no directory.");
  if (::mkdtemp(directory.data()) == nullptr) throw std::runtime_error("There can be no " + directory + ".");
  return SimulatedMac(std::shared_ptr<const fs::path>(new fs::path(directory), removeTree));
}

SimulatedMac SimulatedMac::in(const fs::path& directory) {
  std::error_code ignored;
  fs::create_directory(directory, ignored);
  if (!fs::is_directory(directory))
    throw std::runtime_error("There can be no directory " + directory.string() + ".");
  if (!fs::is_empty(directory)) throw std::runtime_error(directory.string() + " is not empty.");
  return SimulatedMac(std::make_shared<const fs::path>(fs::canonical(directory)));
}

SimulatedMac::SimulatedMac(std::shared_ptr<const fs::path> root) : root_(std::move(root)) {
  for (const char* directory :
       {"/.simulation", "/host", "/proc", "/dev", "/tmp", "/Applications", "/Users/Shared"}) {
    addDirectory(directory);
  }
  for (const char* directory : {"/Containers", "/LaunchAgents", "/QuickLook"})
    addDirectory(home + "/Library" + directory);
  addLink("/lib", "host/lib");
  addLink("/lib64", "host/lib64");
  addLink("/usr/lib", "../host/usr/lib");
  addPropertyList(dockFile, "<dict><key>autohide</key><false/></dict>", true);
  for (const std::string& list : {keychainFile, approvalsFile, electionsFile, jobsFile}) {
    addPropertyList(list, "<dict><key>entries</key><array/></dict>");
  }
  installTools();
}

fs::path SimulatedMac::at(std::string_view path) const {
  fs::path place = root();
  for (const fs::path& part : fs::path(path).relative_path()) {
    if (part == ".." || fs::is_symlink(place))
      throw std::runtime_error("A link on the way to " + part.string());
    place /= part;
  }
  return place;
}

bool SimulatedMac::exists(std::string_view path) const { return fs::exists(fs::symlink_status(at(path))); }

std::string SimulatedMac::read(std::string_view path) const {
  const fs::path file = at(path);
  return fs::symlink_status(file).type() == fs::file_type::regular ? readFile(file) : "";
}

void SimulatedMac::addDirectory(std::string_view path) { fs::create_directories(at(path)); }

void SimulatedMac::addFile(std::string_view path, std::string_view content) {
  const fs::path file = at(path);
  if (fs::is_symlink(file)) throw std::runtime_error(std::string(path) + " is a link.");
  fs::create_directories(file.parent_path());
  writeFile(file, content);
}

void SimulatedMac::addLink(std::string_view path, std::string_view target) {
  fs::create_directories(at(path).parent_path());
  fs::create_symlink(target, at(path));
}

void SimulatedMac::addPropertyList(std::string_view path, const std::string& body, bool binary) {
  const Plist list = parsePlist(framed(body));
  if (list == nullptr) throw std::runtime_error("No property list: " + body);
  addFile(path, binary ? "bplist" : "");
  writePlist(at(path), list.get());
}

void SimulatedMac::addBundle(const std::string& path, const std::string& identifier) {
  const std::string executable = path + "/Contents/MacOS/" + fs::path(path).stem().string();
  addFile(executable);
  fs::permissions(at(executable), fs::perms{0755});
  addFile(path + "/Contents/Info.plist", toXml(toPlist({{"CFBundleIdentifier", identifier}}).get()));
}

void SimulatedMac::addLaunchAgent(const std::string& label) {
  const std::string path = home + "/Library/LaunchAgents/" + label + ".plist";
  addFile(path, toXml(toPlist({{"Label", label}}).get()));
  addEntry(at(jobsFile), toPlist({{"identifier", label}, {"path", path}}));
}

void SimulatedMac::addKeychainItem(const std::string& label, const std::string& account) {
  addEntry(at(keychainFile), toPlist({{"label", label}, {"account", account}, {"service", label}}));
}

void SimulatedMac::addApproval(const std::string& identifier) {
  addEntry(at(approvalsFile), toPlist({{"client", identifier}, {"service", "Accessibility"}}));
}

void SimulatedMac::addElection(const std::string& identifier) {
  addEntry(at(electionsFile), toPlist({{"identifier", identifier}, {"election", "use"}}));
}

void SimulatedMac::addDockTile(const std::string& label, const std::string& url) {
  Plist entry = parsePlist(tile);
  const std::string guid = "5B1E9C3A-7D42-4F08-9A6B-" + std::to_string(100'000'000'000 + ++tiles_);
  plist_dict_set_item(entry.get(), "GUID", plist_new_string(guid.c_str()));
  plist_t data = plist_dict_get_item(entry.get(), "tile-data");
  plist_dict_set_item(data, "file-label", plist_new_string(label.c_str()));
  plist_t file = plist_dict_get_item(data, "file-data");
  if (!url.empty()) plist_dict_set_item(file, "_CFURLString", plist_new_string(url.c_str()));
  addEntry(at(dockFile), std::move(entry), "persistent-others");
}

// The simulated tools lie beside our own executable.
void SimulatedMac::installTools() {
  const fs::path directory = fs::canonical("/proc/self/exe").parent_path();
  const std::string ours = "/host" + (directory / "simulated_mac_tool").string();
  const auto install = [this](const std::string& tool, const std::string& target) {
    fs::remove(at(tool));
    addLink(tool, target);
    applyAbsence(at(tool), readFaults(at(faultsFile), fs::path(tool).filename(), 1));
  };
  install(sessionProgram, ours);
  for (const std::string& tool : simulatedTools) install(tool, ours);
  for (const std::string& tool : linkedTools) install(tool, hostTool(tool));
  for (const std::string& tool : recordedTools) {
    install(tool, ours);
    fs::remove(at(realToolsDirectory + tool));
    addLink(realToolsDirectory + tool, hostTool(tool));
  }
}
}  // namespace wendle::mac
