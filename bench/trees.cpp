// What the tree benchmarks need, by the name of a verb:
//   make FOLDER FOLDERS FILES MATCHES DEPTH   a tree: so many folders, the first MATCHES of them called
//                                             `com.wendle.N`, FILES files spread over them, a chain of DEPTH
//   remove PATH                               as the uninstaller deletes
//   walk FOLDER                               as it looks for containers; prints how many there are
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cstdlib>
#include <iostream>
#include <string>
#include <string_view>

#include "platform/directory_walk.h"
#include "platform/item_removal.h"

namespace {

void makeChain(int depth) {
  for (int level = 0; level < depth; ++level) {
    if (::mkdir("deep", S_IRWXU) != 0 || ::chdir("deep") != 0) std::exit(1);
  }
}

void makeTree(const char* folder, int folders, int files, int matches, int depth) {
  if (::mkdir(folder, S_IRWXU) != 0 || ::chdir(folder) != 0) std::exit(1);
  for (int i = 0; i < folders; ++i) {
    const std::string name = (i < matches ? "com.wendle." : "folder") + std::to_string(i);
    if (::mkdir(name.c_str(), S_IRWXU) != 0) std::exit(1);
    for (int file = i; file < files; file += folders) {
      ::close(::open((name + "/file" + std::to_string(file)).c_str(), O_CREAT | O_WRONLY, S_IRUSR));
    }
  }
  makeChain(depth);
}

}  // namespace

int main(int count, char** words) {
  const std::string_view verb = count > 2 ? words[1] : "";
  if (verb == "make" && count == 7) {
    makeTree(words[2], std::atoi(words[3]), std::atoi(words[4]), std::atoi(words[5]), std::atoi(words[6]));
  } else if (verb == "remove") {
    if (const auto error = wendle::removeItem(words[2])) {
      std::cerr << wendle::describe(*error) << '\n';
      return 1;
    }
  } else if (verb == "walk") {
    const auto isMatch = [](std::string_view name) { return name.starts_with("com.wendle."); };
    std::cout << wendle::findDirectories(words[2], isMatch).size() << '\n';
  } else {
    return 2;
  }
  return 0;
}
