// What a preview says is what the run then does: on accounts as users have them, and on random ones.
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <random>
#include <regex>
#include <set>

#include "end_to_end/report_answers.h"
#include "platform/file_url.h"
#include "simulated_mac/client_fixture.h"
#include "simulated_mac/shared.h"
#include "support/clean_run.h"

namespace wendle::test {
namespace {
std::string toUrl(const std::string& path) {
  return FileUrl::fileUrlWithDirectoryPath(path).absoluteString();
}

// Each file URL once, as a preview has it, and with a slash at the end, which its paths cannot have.
void appendUrl(Lines& urls, std::string item) {
  if (!item.ends_with('/')) item += '/';
  if (item.starts_with("file://") && std::ranges::count(urls, item) == 0) urls.push_back(item);
}

// What goes and what cannot, as file URLs: as a preview has it, or a run's report.
struct Outcome {
  Lines removed, failed;
};

Outcome toOutcome(const json& preview) {
  Outcome outcome;
  for (const json& item : preview.at("items")) {
    if (item.contains("path"))
      (item.contains("because") ? outcome.failed : outcome.removed).push_back(toUrl(item["path"]));
  }
  return outcome;
}

// /bin/rm's result is not looked at by the run: here it is, on the disk.
Outcome toOutcome(const json& report, const mac::SimulatedMac& mac) {
  Outcome outcome;
  for (const std::string item : report.at("removed")) appendUrl(outcome.removed, item);
  for (const json& item : report.at("failed")) appendUrl(outcome.failed, item.at("item"));
  const std::string rm = "rm -rf ";
  for (const std::string tool : report.at("toolsRun")) {
    if (!tool.starts_with(rm)) continue;
    const std::string path = tool.substr(rm.size());
    appendUrl(mac.exists(path) ? outcome.failed : outcome.removed, toUrl(path));
  }
  return outcome;
}

// What is gone of a shared list: its entries' names, up to the first comma.
std::set<std::string> goneFrom(const std::string& list, const mac::SnapshotDifference& difference) {
  std::set<std::string> gone;
  for (const std::string& path : difference.removed) {
    if (path.starts_with(list + ": ")) gone.insert(mac::split(path.substr(list.size() + 2), ',').front());
  }
  return gone;
}

// The items that tools are given which may find nothing to do: the preview says of each that it will be
// asked.
Lines requestedItems(const Lines& journal) {
  static const std::regex form(R"(/usr/bin/(?:pluginkit|tccutil|defaults \[remove).* \[(.*)\] exit .*)");
  Lines items;
  for (const std::string& line : journal) {
    if (std::smatch match; std::regex_match(line, match, form)) items.push_back(match[1]);
  }
  return items;
}

void expectPreviewIsTheRun(mac::SimulatedMac& mac, const std::string& mode) {
  const mac::Snapshot before = mac.snapshot();
  const json preview = ask(mac, {"preview", "--" + mode, "--json"});
  EXPECT_TRUE(before == mac.snapshot()) << "the preview changed something";
  const RunResult run = runUninstaller(mac, {"--" + mode});
  EXPECT_EQ(run.outcome, "exit 0");
  const mac::SnapshotDifference difference = mac::difference(before, mac.snapshot());
  const json report = ask(mac, {"--json"});
  EXPECT_EQ(report.at("reachedEnd"), true);

  const Outcome planned = toOutcome(preview), seen = toOutcome(report, mac);
  EXPECT_EQ(joined(planned.removed), joined(seen.removed));
  EXPECT_EQ(joined(planned.failed), joined(seen.failed));
  EXPECT_EQ(labels(preview, "keychain item"), goneFrom(mac::keychainFile, difference));
  EXPECT_EQ(labels(preview, "Dock tile"), goneFrom(mac::dockFile, difference));
  Lines requested;
  for (const std::string request : preview.at("requests"))
    requested.push_back(std::regex_replace(request, std::regex(".*(com[.][^ ]+).*"), "$1"));
  EXPECT_EQ(joined(requested), joined(requestedItems(run.journal)));
  for (const json& kept : preview.at("kept")) EXPECT_TRUE(mac.exists(std::string(kept.at("path")))) << kept;
}

void setMode(const mac::SimulatedMac& mac, const std::string& path, unsigned mode) {
  std::filesystem::permissions(mac.at(path), std::filesystem::perms{mode});
}

// So that whoever runs the tests can remove the Mac.
void restoreModes(const mac::SimulatedMac& mac) {
  EXPECT_EQ(std::system(("chmod -R u+rwX '" + mac.at("/").string() + "'").c_str()), 0);
}

struct Account {
  std::string name;
  std::function<void(mac::SimulatedMac&)> make;
  friend void PrintTo(const Account& account, std::ostream* out) { *out << account.name; }
};
const std::string support = mac::home + "/Library/Application Support/Wendle";
const std::string container = mac::home + "/Library/Containers/com.wendle.DesktopClient";

void makeHalfRemoved(mac::SimulatedMac& mac) {
  std::vector<mac::Item> items = mac::clientItems();
  std::erase_if(items, [count = 0](const mac::Item&) mutable { return ++count % 2 == 0; });
  mac::installItems(mac, items);
}

// What is in a way that an ordinary user's permissions can be: another's directory looks the same.
void makeUndeletable(mac::SimulatedMac& mac) {
  mac::installClient(mac);
  mac.addFile(container + "/Data/closed/file");
  mac.addFile(support + "/unreadable/file");
  mac.addFile("/Users/Shared/Wendle/kept/deep/file");
  setMode(mac, container + "/Data/closed", 0500);
  setMode(mac, support + "/unreadable", 0300);
  setMode(mac, "/Users/Shared/Wendle/kept/deep", 0500);
  setMode(mac, mac::home + "/Library/LaunchAgents", 0500);
  for (const char* part : {"/WendleAgent.app/Contents", ""})
    setMode(mac, std::string("/Applications/Wendle.app/Contents/Helpers") + part, 0500);
  setMode(mac, "/Applications", 0555);
}

void addDanglingLink(mac::SimulatedMac& mac) {
  mac.addLink(support + "/LaunchAgents/WendleExtension.app", "/nowhere");
}

class AccountsTest : public testing::TestWithParam<std::tuple<Account, std::string>> {};

TEST_P(AccountsTest, LoseExactlyWhatThePreviewLists) {
  mac::SimulatedMac mac = mac::SimulatedMac::scratch();
  std::get<0>(GetParam()).make(mac);
  expectPreviewIsTheRun(mac, std::get<1>(GetParam()));
  restoreModes(mac);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, AccountsTest,
    testing::Combine(testing::Values(Account{"bare", addDanglingLink}, Account{"full", mac::installClient},
                                     Account{"halfRemoved", makeHalfRemoved},
                                     Account{"undeletable", makeUndeletable}),
                     testing::ValuesIn(modes)),
    [](const auto& c) { return std::get<0>(c.param).name + "_" + std::get<1>(c.param); });

// As on a Mac everybody may add to /Users/Shared, and take out only what is his own; here it is a link.
TEST(SharedDirectoryTest, KeepsWhatAnotherUserPutThere) {
  if (::geteuid() != 0) GTEST_SKIP() << "only root can make another user's folder";
  constexpr uid_t other = 12345;
  mac::SimulatedMac mac = mac::SimulatedMac::scratch();
  mac::installClient(mac);
  std::filesystem::rename(mac.at("/Users/Shared"), mac.at("/Users/Common"));
  mac.addLink("/Users/Shared", "Common");
  setMode(mac, "/Users/Common", 01777);
  setMode(mac, "/Users/Common/Wendle", 0777);
  for (const char* path : {"/Users/Common", "/Users/Common/Wendle"})
    ASSERT_EQ(::lchown(mac.at(path).c_str(), other, other), 0);
  const std::string own = mac::home + "/Library/Preferences";  // what lies there he may take out
  setMode(mac, own, 01755);
  ASSERT_EQ(::lchown(mac.at(own + "/com.wendle.DesktopClient.plist").c_str(), other, other), 0);
  EXPECT_EQ(runReport(mac, {"preview", "--soft", "--needs-root"}).out,
            std::string("/Users/Shared/Wendle") + '\0');
  expectPreviewIsTheRun(mac, "soft");
  EXPECT_TRUE(mac.exists("/Users/Common/Wendle"));
}

// Whether the log, or a list that the tools share, lies below: without it there is nothing to compare.
bool isNeeded(const std::string& directory) {
  static const std::string needed =
      joined({mac::home + "/Library/Logs/Wendle", mac::keychainFile, mac::approvalsFile, mac::electionsFile,
              mac::jobsFile, mac::dockFile});
  return needed.find(directory + "/") != needed.npos;
}

// An account made of the installed client's items: some left out, some directories closed, and among what
// lies there bundles and containers more.
void makeRandom(mac::SimulatedMac& mac, std::mt19937& random) {
  const auto oneIn = [&](unsigned count) { return random() % count == 0; };
  std::vector<mac::Item> items = mac::clientItems();
  std::erase_if(items, [&](const mac::Item&) { return oneIn(3); });
  mac::installItems(mac, items);
  Lines directories;
  for (const auto& [path, entry] : mac.snapshot()) {
    const bool isPlace = path.starts_with("/Applications") || path.starts_with("/Users/");
    if (isPlace && entry.type == std::filesystem::file_type::directory) directories.push_back(path);
  }
  const auto place = [&] { return directories[random() % directories.size()]; };
  for (int i = 0; i < 4; ++i) {
    mac.addBundle(place() + "/Nested" + std::to_string(i) + ".app", "com.wendle.DesktopClient.WendleAgent");
    mac.addFile(place() + "/com.wendle.nested" + std::to_string(i) + "/file", "content");
  }
  // What a closed directory holds cannot be seen, so none is empty.
  std::map<std::string, unsigned> closed;
  for (unsigned mode : {0500U, 0500U, 0300U, 0U}) {
    if (const std::string path = place(); oneIn(2) && !isNeeded(path)) closed[path] = mode;
  }
  for (const auto& [path, mode] : closed) mac.addFile(path + "/held", "content");
  for (auto path = closed.rbegin(); path != closed.rend(); ++path) setMode(mac, path->first, path->second);
}

// Each test takes every N-th account, so that they can run side by side.
constexpr unsigned shares = 6;

class RandomAccountsTest : public testing::TestWithParam<unsigned> {};

TEST_P(RandomAccountsTest, LoseExactlyWhatThePreviewLists) {
  const char* wanted = std::getenv("WENDLE_RANDOM_ACCOUNTS");
  const auto accounts = static_cast<unsigned>(wanted == nullptr ? 12 : std::atoi(wanted));
  for (unsigned seed = GetParam(); seed < accounts && !HasFailure(); seed += shares) {
    std::mt19937 random(seed);
    SCOPED_TRACE("account " + std::to_string(seed));
    mac::SimulatedMac mac = mac::SimulatedMac::scratch();
    makeRandom(mac, random);
    expectPreviewIsTheRun(mac, modes[random() % modes.size()]);
    restoreModes(mac);
  }
}

INSTANTIATE_TEST_SUITE_P(Shares, RandomAccountsTest, testing::Range(0U, shares));
}  // namespace
}  // namespace wendle::test
