// What the tree benchmarks need, by the name of a verb:
//   make FOLDER FOLDERS FILES MATCHES DEPTH   a tree: so many folders, the first MATCHES of them called
//                                             `com.wendle.N`, FILES files spread over them, a chain of DEPTH
//   chain FOLDER DEPTH                        folders in one another, in each also an empty one of mode 0400
//   remove PATH                               as the uninstaller deletes
//   walk FOLDER                               as it looks for containers; prints how many there are
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>

#include "platform/file_tree.h"

namespace {

void makeAndEnter(const char* folder) {
  if (::mkdir(folder, S_IRWXU) != 0 || ::chdir(folder) != 0) std::exit(1);
}

void makeClosedChain(const char* folder, int depth) {
  for (makeAndEnter(folder); depth > 0; --depth) {
    if (::mkdir("closed", S_IRUSR) != 0) std::exit(1);
    makeAndEnter("deep");
  }
}

void makeTree(const char* folder, int folders, int files, int matches, int depth) {
  makeAndEnter(folder);
  for (int i = 0; i < folders; ++i) {
    const std::string name = (i < matches ? "com.wendle." : "folder") + std::to_string(i);
    if (::mkdir(name.c_str(), S_IRWXU) != 0) std::exit(1);
    for (int file = i; file < files; file += folders) {
      ::close(::open((name + "/file" + std::to_string(file)).c_str(), O_CREAT | O_WRONLY, S_IRUSR));
    }
  }
  for (; depth > 0; --depth) makeAndEnter("deep");
}

}  // namespace

int main(int count, char** words) {
  const std::string_view verb = count > 2 ? words[1] : "";
  if (verb == "make" && count == 7) {
    makeTree(words[2], std::atoi(words[3]), std::atoi(words[4]), std::atoi(words[5]), std::atoi(words[6]));
  } else if (verb == "chain" && count == 4) {
    makeClosedChain(words[2], std::atoi(words[3]));
  } else if (verb == "remove") {
    if (const wendle::Status status = wendle::removeItem(words[2]); !status.ok()) {
      std::cerr << wendle::describe(status.error()) << '\n';
      return 1;
    }
  } else if (verb == "walk") {
    const auto isMatch = [](std::string_view name) { return name.starts_with("com.wendle."); };
    std::cout << wendle::FileTree(words[2]).findDirectories(isMatch).size() << '\n';
  } else {
    return 2;
  }
  return 0;
}
