#include "support/expected_text.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cstdlib>

#include "simulated_mac/shared.h"

namespace wendle::test {
namespace {
mac::fs::path expectedPath(const std::string& file) { return mac::fs::path(EXPECTED_TEXTS) / file; }

bool isHeading(const std::string& line) { return line.starts_with("== "); }

// The section's lines within all of the file's; both at the end when there is no such section.
std::pair<Lines::iterator, Lines::iterator> find(Lines& lines, const std::string& section) {
  auto begin = std::find(lines.begin(), lines.end(), "== " + section);
  if (begin != lines.end()) ++begin;
  return {begin, std::find_if(begin, lines.end(), isHeading)};
}

// Tests run side by side, and several have their sections in one file.
void rewrite(const std::string& file, const std::string& section, const Lines& seen) {
  const int lock = ::open(EXPECTED_TEXTS, O_RDONLY | O_CLOEXEC);
  while (::flock(lock, LOCK_EX) != 0 && errno == EINTR) continue;
  Lines lines = mac::split(mac::readFile(expectedPath(file)), '\n');
  auto [begin, end] = find(lines, section);
  Lines text = seen;
  if (begin == lines.end()) text.insert(text.begin(), {"", "== " + section});
  if (end != lines.end()) text.emplace_back();
  lines.insert(lines.erase(begin, end), text.begin(), text.end());
  mac::writeFile(expectedPath(file + ".new"), joined(lines));
  mac::fs::rename(expectedPath(file + ".new"),
                  expectedPath(file));  // whole at any moment for those who read it
  ::close(lock);
}
}  // namespace

Lines expectedLines(const std::string& file, const std::string& section) {
  Lines lines = mac::split(mac::readFile(expectedPath(file)), '\n');
  const auto [begin, end] = find(lines, section);
  EXPECT_NE(begin, lines.end()) << file << " has no section " << section;
  Lines found(begin, end);
  std::erase(found, "");
  return found;
}

void expectText(const std::string& file, const std::string& section, const Lines& seen) {
  if (std::getenv("WENDLE_UPDATE_EXPECTED") != nullptr) rewrite(file, section, seen);
  EXPECT_EQ(joined(seen), joined(expectedLines(file, section)));
}

std::string joined(const Lines& lines) {
  std::string text;
  for (const std::string& line : lines) text += line + "\n";
  return text;
}
}  // namespace wendle::test
