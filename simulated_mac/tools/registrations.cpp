// The tools that change what the system knows of the user, and those that look for bundles.
#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <set>

#include "simulated_mac/tools/tools.h"

namespace wendle::mac {
namespace {
constexpr int jobExitTimeoutMs = 1000;

// The processes besides the session for which `matches` holds; it is given the words in /proc/PID/NAME.
std::vector<int> processesWhere(const std::string& name, const std::function<bool(const Strings&)>& matches) {
  std::vector<int> pids;
  for (const auto& item : fs::directory_iterator("/proc")) {
    const int pid = std::atoi(item.path().filename().c_str());
    if (pid > 1 && matches(split(readFile(item.path() / name)))) pids.push_back(pid);
  }
  return pids;
}

std::vector<int> processesOfJob(const Record& job) {
  const std::string variable = "XPC_SERVICE_NAME=" + job.at("identifier");
  return processesWhere("environ",
                        [&](const Strings& each) { return std::ranges::count(each, variable) > 0; });
}

int listJob(const std::string& label) {
  const auto job = findEntry(jobsFile, "identifier", label, Find::only);
  if (!job) return complain("Could not find service \"" + label + "\" in domain for port", 113);
  std::cout << "{\n\t\"LimitLoadToSessionType\" = \"Aqua\";\n\t\"Label\" = \"" << label
            << "\";\n\t\"OnDemand\" = true;\n\t\"LastExitStatus\" = 0;\n";
  for (const int pid : processesOfJob(*job)) std::cout << "\t\"PID\" = " << pid << ";\n";
  std::cout << "};\n";
  return 0;
}

// As launchd ends a job: asks its process, and kills it when it has not gone in time [D].
void endJob(const Record& job) {
  for (const int pid : processesOfJob(job)) {
    pollfd gone = {openProcess(pid), POLLIN, 0};
    ::kill(pid, SIGTERM);
    if (::poll(&gone, 1, jobExitTimeoutMs) == 0) ::kill(pid, SIGKILL);
    ::poll(&gone, 1, -1);
  }
}

std::set<std::string> findBundles(const std::string& identifier) {
  std::set<std::string> found;
  walk("/", [&](const fs::directory_entry& item, const std::string& path) {
    if (!path.ends_with("/Contents/Info.plist")) return;
    const Plist info = parsePlist(readFile(item.path()));
    if (info && toText(info.get(), "CFBundleIdentifier") == identifier) {
      found.insert(item.path().parent_path().parent_path());
    }
  });
  return found;
}
}  // namespace

int openProcess(int pid) { return static_cast<int>(::syscall(SYS_pidfd_open, pid, 0)); }

int launchctl(const Strings& arguments) {
  if (arguments.size() > 2 && arguments[0] == "asuser") return launchctlAsUser(arguments);
  if (fits(arguments, "list *")) return listJob(arguments[1]);
  const bool unloads = fits(arguments, "unload -w *");
  if (!unloads && !fits(arguments, "remove *")) return complain("Usage: launchctl ...", 64);
  const char* key = unloads ? "path" : "identifier";
  std::optional<Record> job;
  if (!unloads || fs::exists(arguments[2])) job = findEntry(jobsFile, key, arguments.back(), Find::andTake);
  if (job) endJob(*job);
  if (unloads && !job) return complain("Unload failed: 5: Input/output error", 0);
  return job ? 0 : 3;
}

int pluginkit(const Strings& arguments) {
  if (!fits(arguments, "-e * -i *")) return complain("Usage: pluginkit ...", 64);
  if (auto election = findEntry(electionsFile, "identifier", arguments[3], Find::andTake)) {
    (*election)["election"] = arguments[1];
    addEntry(electionsFile, toPlist(*election));
  }
  return 0;
}

int tccutil(const Strings& arguments) {
  if (!fits(arguments, "reset All *")) return complain("Usage: tccutil ...", 64);
  const std::string& identifier = arguments[2];
  if (findBundles(identifier).empty()) {
    std::cerr << "tccutil: No such bundle identifier \"" << identifier
              << "\": The operation couldn\u2019t be completed. (OSStatus error -10814.)\n";
    return 64;
  }
  while (findEntry(approvalsFile, "client", identifier, Find::andTake)) continue;
  std::cout << "Successfully reset All approval status for " << identifier << '\n';
  return 0;
}

int mdfind(const Strings& arguments) {
  const std::string query = "kMDItemCFBundleIdentifier == ";
  if (!fits(arguments, "*") || !arguments[0].starts_with(query))
    return complain("Failed to create query.", 1);
  for (const std::string& path : findBundles(arguments[0].substr(query.size()))) std::cout << path << '\n';
  return 0;
}

int security(const Strings& arguments) {
  const bool deletes = fits(arguments, "delete-generic-password -l * *");
  if (!deletes && !fits(arguments, "find-generic-password -l * *")) return complain("Usage: security ...", 2);
  const std::string search = "security: SecKeychainSearchCopyNext: The specified ";
  if (!fs::exists(arguments[3])) return complain(search + "keychain could not be found.", 50);
  const auto item = findEntry(arguments[3], "label", arguments[2], deletes ? Find::andTake : Find::only);
  if (!item) return complain(search + "item could not be found in the keychain.", 44);
  std::cout << "keychain: \"" << arguments[3] << "\"\nversion: 512\nclass: \"genp\"\nattributes:\n"
            << "    0x00000007 <blob>=\"" << item->at("label") << "\"\n    \"acct\"<blob>=\""
            << item->at("account") << "\"\n    \"svce\"<blob>=\"" << item->at("service") << "\"\n";
  return deletes ? complain("password has been deleted.", 0) : 0;
}

int killall(const Strings& arguments) {
  if (arguments.size() != 1) return complain("usage: killall [procname ...]", 1);
  const auto isNamed = [&](const Strings& words) {
    return !words.empty() && fs::path(words[0]).filename() == arguments[0];
  };
  const auto pids = processesWhere("cmdline", isNamed);
  for (const int pid : pids) ::kill(pid, SIGTERM);
  return pids.empty() ? complain("No matching processes belonging to you were found", 1) : 0;
}
}  // namespace wendle::mac
