#include "platform/running_applications.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include <array>
#include <csignal>

#include "base/unique_fd.h"
#include "support/temp_directory.h"

namespace wendle {
namespace {
constexpr uid_t somebodyElse = 65534;

// A program that sleeps as that user, and what macOS would have set for the application it belongs to [I].
class Sleeper {
 public:
  Sleeper(const std::string& program, uid_t user, const char* variable) {
    std::array<int, 2> ends{};
    EXPECT_EQ(::pipe2(ends.data(), O_CLOEXEC), 0);
    const UniqueFd reading(ends[0]);
    UniqueFd writing(ends[1]);
    process_ = ::fork();
    if (process_ == 0) {
      if (::setuid(user) == 0)
        ::execle(program.c_str(), "sleep", "600", nullptr,
                 std::array{variable, static_cast<const char*>(nullptr)}.data());
      (void)::write(writing.get(), "!", 1);
      ::_exit(1);
    }
    writing.reset();
    char failure = 0;
    const bool isStarted = ::read(reading.get(), &failure, 1) == 0;
    EXPECT_TRUE(isStarted);
    // exec(2) closes the pipe just before /proc shows the new environment.
    const std::string environment = "/proc/" + std::to_string(process_) + "/environ";
    while (isStarted && std::ifstream(environment).peek() == EOF) ::usleep(1000);
  }
  Sleeper(const Sleeper&) = delete;
  ~Sleeper() {
    ::kill(process_, SIGKILL);
    ::waitpid(process_, nullptr, 0);
  }

 private:
  pid_t process_;
};

// A program that its user may not read hides its environment: that file of /proc is the superuser's then.
TEST(RunningApplications, AreThisUsersOwnAlsoForTheSuperuser) {
  const TempDirectory temp;
  const std::string program = temp / "sleep";
  std::filesystem::copy_file("/bin/sleep", program);
  const Sleeper own(program, ::getuid(), "__CFBundleIdentifier=own");
  const Sleeper resembling(program, ::getuid(), "LAUNCHED_BY__CFBundleIdentifier=own");
  EXPECT_EQ(runningApplicationsWithBundleIdentifier("own").size(), 1U);
  if (::getuid() != 0) GTEST_SKIP() << "only the superuser can start another user's process";
  ::chmod((temp / "").c_str(), 0711);
  ::chmod(program.c_str(), 0711);
  const Sleeper hidden(program, somebodyElse, "__CFBundleIdentifier=hidden");
  EXPECT_TRUE(runningApplicationsWithBundleIdentifier("hidden").empty());
}
}  // namespace
}  // namespace wendle
