// What the tree benchmarks need, by the name of a verb:
//   make DIRECTORY COUNT FILES MATCHES DEPTH   a tree: COUNT directories, the first MATCHES of them called
//                                              `com.wendle.N`, FILES files spread over them, a chain of DEPTH
//   chain DIRECTORY DEPTH   directories in one another, in each also an empty one of mode 0400
//   remove PATH             as the uninstaller deletes
//   walk DIRECTORY          as it looks for containers; prints how many there are
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>

#include "platform/file_tree.h"

namespace {
void makeAndEnter(const char* directory) {
  if (::mkdir(directory, S_IRWXU) != 0 || ::chdir(directory) != 0) std::exit(1);
}

void makeClosedChain(const char* directory, int depth) {
  for (makeAndEnter(directory); depth > 0; --depth) {
    if (::mkdir("closed", S_IRUSR) != 0) std::exit(1);
    makeAndEnter("deep");
  }
}

void makeTree(const char* directory, int directories, int files, int matches, int depth) {
  makeAndEnter(directory);
  for (int i = 0; i < directories; ++i) {
    const std::string name = (i < matches ? "com.wendle." : "folder") + std::to_string(i);
    if (::mkdir(name.c_str(), S_IRWXU) != 0) std::exit(1);
    for (int file = i; file < files; file += directories) {
      ::close(::open((name + "/file" + std::to_string(file)).c_str(), O_CREAT | O_WRONLY, S_IRUSR));
    }
  }
  for (; depth > 0; --depth) makeAndEnter("deep");
}
}  // namespace

int main(int argc, char** argv) {
  const std::string_view verb = argc > 2 ? argv[1] : "";
  if (verb == "make" && argc == 7) {
    makeTree(argv[2], std::atoi(argv[3]), std::atoi(argv[4]), std::atoi(argv[5]), std::atoi(argv[6]));
  } else if (verb == "chain" && argc == 4) {
    makeClosedChain(argv[2], std::atoi(argv[3]));
  } else if (verb == "remove") {
    if (const wendle::Status status = wendle::removeItem(argv[2]); !status.ok()) {
      std::cerr << wendle::describe(status.error()) << '\n';
      return 1;
    }
  } else if (verb == "walk") {
    const auto isMatch = [](std::string_view name) { return name.starts_with("com.wendle."); };
    std::cout << wendle::FileTree(argv[2]).findDirectories(isMatch).size() << '\n';
  } else {
    return 2;
  }
  return 0;
}
