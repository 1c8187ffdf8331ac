// The tables of README.md and docs/modes.md say what the modes do.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <map>
#include <regex>

#include "support/clean_run.h"

namespace wendle::test {
namespace {

Lines splitCells(const std::string& row) {
  static const std::regex separator(R"( *\| *)");
  return {std::sregex_token_iterator(row.begin() + 2, row.end(), separator, -1), {}};
}

// The rows of the page's table of modes, below its heads: the text on the left, and for each mode its cell.
struct Row {
  Lines text;
  Lines cells;
};

std::vector<Row> tableOfModes(const std::string& page) {
  std::ifstream file(SOURCE_DIRECTORY "/" + page);
  std::string line;
  while (std::getline(file, line) &&
         line.find("| `--updates` | `--soft` | `--hard` | `--full` |") == line.npos) {
  }
  std::vector<Row> rows;
  for (std::getline(file, line); std::getline(file, line) && line.starts_with("|");) {
    const Lines cells = splitCells(line);
    if (cells.size() < 5) throw std::runtime_error(page + " has a row without four modes: " + line);
    rows.push_back({{cells.begin(), cells.end() - 4}, {cells.end() - 4, cells.end()}});
  }
  return rows;
}

// Whether a log line begins as a row of the modes' page has it: `Remove .../Wendle.app - started`, with any
// text for the dots.
bool beginsStep(const std::string& line, const Row& row) {
  const std::string& begin = row.text.back();
  const auto gap = std::min(begin.find("..."), begin.size() - 1);
  const auto message = line.find("uninstaller: ") + std::string("uninstaller: ").size();
  const std::string rest = gap + 3 < begin.size() ? begin.substr(gap + 3, begin.size() - gap - 4) : "";
  return line.find(begin.substr(1, gap - 1), message) == message && line.find(rest) != line.npos;
}

// The numbered steps that a run's log shows; what calls itself a step and has no row, as it stands there.
Lines stepsSeen(const Lines& log, const std::vector<Row>& rows) {
  Lines steps;
  Lines numbered;
  for (const std::string& line : log) {
    const auto row =
        std::find_if(rows.begin(), rows.end(), [&](const Row& each) { return beginsStep(line, each); });
    const bool isRun = line.find(": Run `") != line.npos;
    if (row == rows.end() && (isRun || !line.ends_with(" - started"))) continue;
    const std::string& step = row == rows.end() ? line : row->text.front();
    if (std::find(steps.begin(), steps.end(), step) != steps.end()) continue;
    steps.push_back(step);
    numbered.push_back(std::to_string(steps.size()) + " " + step);
  }
  return numbered;
}

// The same, as the page has them.
Lines stepsSaid(const std::vector<Row>& rows, std::size_t mode) {
  std::map<int, std::string> steps;
  for (const Row& row : rows) {
    const std::string& number = row.cells[mode];
    if (number != "-") steps[std::stoi(number)] += number + " " + row.text.front();
  }
  Lines numbered;
  for (const auto& [number, step] : steps) numbered.push_back(step);
  return numbered;
}

TEST(ModesPage, NumbersTheStepsOfEachModeAsTheyRun) {
  const std::vector<Row> rows = tableOfModes("docs/modes.md");
  for (std::size_t mode = 0; mode < modes.size(); ++mode) {
    EXPECT_EQ(joined(stepsSaid(rows, mode)),
              joined(stepsSeen(logIn(expectedLines(modes[mode] + ".txt", "run")), rows)))
        << "docs/modes.md does not have the steps of --" << modes[mode];
  }
}

// What stands for a row of the README, by the row's first words: kinds and ends of places in the simulated
// Mac.
const std::map<std::string, std::vector<std::pair<std::string, std::string>>> examples = {
    {"launch agents",
     {{"launch agent", ".WendleAgent.plist"}, {"bundle", "/WendleQL.qlgenerator"}, {"plug-in election", ""}}},
    {"search extension",
     {{"job process", "WendleExtension"},
      {"privacy approval", ".WendleExtension"},
      {"preferences", ".WendleExtension.plist"},
      {"bundle", "/LaunchAgents/WendleExtension.app"}}},
    {"the other components'", {{"privacy approval", ".WendleAgent"}, {"preferences", ".WendleAgent.plist"}}},
    {"containers",
     {{"folder", "/Containers/com.wendle.DesktopClient"},
      {"keychain item", "WendleAgent"},
      {"folder", "/Application Support/Wendle"},
      {"folder", "/Users/Shared/Wendle"},
      {"Dock tile", "Wendle"}}},
    {"`/Applications/Wendle.app`", {{"bundle", "/Applications/Wendle.app"}, {"process", "WendleAgent"}}},
    {"copies of the five", {{"bundle", "/Users/pat/Applications/WendleAgent.app"}}},
    {"such copies",
     {{"bundle", "/Volumes/Backup/Applications/WendleAgent.app"},
      {"bundle", "/DerivedData/Products/WendleAgent.app"},
      {"bundle", ".backupdb/Latest/WendleAgent.app"},
      {"bundle", "/Clone/WendleAgent.app"}}},
    {"`/Applications/Wendle`", {{"folder", "/Applications/Wendle"}}},
};

TEST(Readme, SaysWhatEachModeRemoves) {
  const std::vector<Row> rows = tableOfModes("README.md");
  EXPECT_EQ(rows.size(), examples.size()) << "README.md has rows without an example, or the reverse";
  for (const Row& row : rows) {
    const auto found = std::find_if(examples.begin(), examples.end(), [&](const auto& example) {
      return row.text.front().starts_with(example.first);
    });
    ASSERT_NE(found, examples.end()) << "no example of README.md's row: " << row.text.front();
    for (const auto& [kind, end] : found->second) {
      const auto& items = mac::clientItems();
      const auto item =
          std::find_if(items.begin(), items.end(), [&, &kind = kind, &end = end](const mac::Item& i) {
            return i.kind == kind && i.place.ends_with(end);
          });
      ASSERT_NE(item, items.end()) << kind << " " << end;
      for (std::size_t i = 0; i < modes.size(); ++i) {
        EXPECT_EQ(item->isRemovedBy(*chosenMode({"--" + modes[i]})), row.cells[i] != "-")
            << "README.md is wrong of " << item->place << ": " << row.text.front();
      }
    }
  }
}

}  // namespace
}  // namespace wendle::test
