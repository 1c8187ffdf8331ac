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

// How the page has a step's first line in the log: `Remove .../Wendle.app - started`, with any text for the
// dots.
std::regex firstLine(const Row& row) {
  const std::string text = row.text.back().substr(1, row.text.back().size() - 2);
  return std::regex(".* uninstaller: " + std::regex_replace(text, std::regex("[.]{3}"), ".*") + ".*");
}

TEST(ModesPage, NumbersTheStepsOfEachModeAsTheyRun) {
  const std::vector<Row> rows = tableOfModes("docs/modes.md");
  for (std::size_t mode = 0; mode < modes.size(); ++mode) {
    SCOPED_TRACE("docs/modes.md on --" + modes[mode]);
    const Lines log = logIn(expectedLines(modes[mode] + ".txt", "run"));
    Lines others = log;
    std::map<std::ptrdiff_t, const Row*> steps;  // by their first lines
    for (const Row& row : rows) {
      const auto isFirst = [begin = firstLine(row)](const auto& line) {
        return std::regex_match(line, begin);
      };
      const auto found = std::find_if(log.begin(), log.end(), isFirst);
      if (found != log.end()) steps[found - log.begin()] = &row;
      EXPECT_EQ(row.cells[mode] == "-", found == log.end()) << row.text.front();
      std::erase_if(others, isFirst);
    }
    int number = 0;
    for (const auto& [line, row] : steps)
      EXPECT_EQ(row->cells[mode], std::to_string(++number)) << row->text.front();
    for (const std::string& line : others)
      EXPECT_FALSE(line.ends_with(" - started") && line.find(": Run `") == line.npos) << line;
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
