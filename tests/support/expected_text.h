// The texts in end_to_end/expected, in sections that begin with "== NAME". Whole sequences, a line each, so
// that a missing, an extra and a misplaced line all fail.
#pragma once

#include <string>
#include <vector>

namespace wendle::test {
using Lines = std::vector<std::string>;

[[nodiscard]] Lines expectedLines(const std::string& file, const std::string& section);

// Expects that the section holds `seen`; when WENDLE_UPDATE_EXPECTED is set, it is rewritten to do so.
void expectText(const std::string& file, const std::string& section, const Lines& seen);

[[nodiscard]] std::string joined(const Lines& lines);
}  // namespace wendle::test
