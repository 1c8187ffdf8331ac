#include "simulated_mac/client_items.h"

#include <algorithm>
#include <cctype>
#include <sstream>

#include "simulated_mac/simulated_mac.h"

namespace wendle::mac {
namespace {
constexpr const char* table =
#include "simulated_mac/client_items.inc"
    ;

// The columns of a line of the table; none of a comment.
std::vector<std::string> splitColumns(std::string line) {
  std::vector<std::string> columns;
  while (!line.empty() && line[0] != '#') {
    columns.push_back(line.substr(0, line.find("  ")));
    line.erase(0, std::min(line.size(), line.find_first_not_of(' ', columns.back().size())));
  }
  return columns;
}

std::string replaced(const std::string& text, char mark, const std::string& with) {
  std::string result;
  for (const char c : text) result.append(c == mark ? with : std::string(1, c));
  return result;
}

// The members of a family, or the item alone.
void appendMembers(std::vector<Item>& items, const Item& item) {
  const bool isSearched = item.place.find('*') != std::string::npos;
  const bool isFamily = isSearched || item.place.find('+') != std::string::npos;
  std::vector<std::string> names{""};
  if (isFamily) names = {"Agent", "Launcher", "Updater", "Assistant"};
  if (isSearched) names.push_back("Uninstaller");
  for (const std::string& name : names) {
    Item& member = items.emplace_back(item);
    if (isFamily) member.family = replaced(item.place, '+', "*");
    member.place = replaced(replaced(item.place, '*', name), '+', name);
    member.detail = replaced(replaced(item.detail, '*', name), '+', name);
  }
}

std::vector<Item> readTable() {
  std::vector<Item> items;
  std::istringstream lines(table);
  for (std::string line; std::getline(lines, line);) {
    line = replaced(replaced(line, '~', home), '@', "com.wendle.DesktopClient");
    const std::vector<std::string> columns = splitColumns(line);
    if (columns.size() != 5) continue;
    appendMembers(items, {columns[0], columns[2], columns[3], columns[4], "", columns[1]});
  }
  return items;
}
}  // namespace

bool Item::isRemovedBy(Mode mode) const {
  const char letter = modeSwitch(mode)[2];  // --hard
  return letters.find(static_cast<char>(std::toupper(letter))) != std::string::npos;
}

const std::vector<Item>& clientItems() {
  static const std::vector<Item> items = readTable();
  return items;
}
}  // namespace wendle::mac
