// What Apple's own frameworks do for the product. They have no stand-in here: these run on a Mac only.
#import <Foundation/Foundation.h>
#include <gtest/gtest.h>

#include <csignal>
#include <iostream>
#include <limits>

#include "logging/issues_reporter.h"
#include "platform/file_url.h"
#include "platform/macos/foundation_values.h"
#include "platform/preferences.h"
#include "platform/process_environment.h"
#include "support/every_kind.h"
#include "support/processes.h"
#include "support/temp_directory.h"

namespace wendle {
namespace {
TEST(FoundationValues, KeepEveryKindApart) {
  @autoreleasepool {
    const PropertyList largest{std::numeric_limits<std::uint64_t>::max()};
    for (const PropertyList& list : {everyKind, largest})
      EXPECT_TRUE(toPropertyList(toFoundation(list)) == list);
    EXPECT_EQ(toPropertyList(nil), std::nullopt);
    EXPECT_EQ(toUtf8(toNSString("é😔")), "é😔");
  }
}

TEST(Preferences, OfADomainAreWhatWasWrittenThere) {
  const std::string domain = "com.example.unit-tests." + std::to_string(::getpid());
  UserDefaults defaults(domain);
  EXPECT_EQ(defaults.objectForKey("key"), std::nullopt);
  defaults.setObject(everyKind, "key");
  EXPECT_TRUE(defaults.synchronize());
  EXPECT_TRUE(UserDefaults(domain).objectForKey("key") == everyKind);

  Task removal = childTask({});
  removal.setExecutable("/usr/bin/defaults");
  removal.setArguments({"delete", domain});
  EXPECT_EQ(runForOutput(removal), "");
  EXPECT_EQ(removal.terminationStatus(), 0);
}

TEST(Bookmark, IsOfAnItemThatExists) {
  const TempDirectory temp;
  temp.directory("a é");
  EXPECT_TRUE(bookmarkData(FileUrl::fileUrlWithPath(temp / "a é")));
  EXPECT_FALSE(bookmarkData(FileUrl::fileUrlWithPath(temp / "missing")));
}

TEST(StandardDirectories, AreWhereTheModesLook) {
  const std::string home = homeDirectoryPath();
  EXPECT_EQ(systemDirectoryPath(StandardDirectory::userLibrary), home + "/Library");
  EXPECT_EQ(systemDirectoryPath(StandardDirectory::userApplicationSupport),
            home + "/Library/Application Support");
  EXPECT_EQ(systemDirectoryPath(StandardDirectory::localUsers), "/Users");
  EXPECT_EQ(systemDirectoryPath(StandardDirectory::localApplications), "/Applications");
}

// Ends the process as an Objective-C exception that nothing catches does.
void endByFoundation() {
  IssuesReporter& reporter = IssuesReporter::sharedInstance();
  reporter.setMessageLogger([](const std::string& message) { std::cerr << message << '\n'; });
  reporter.enableReporter();
  const auto raise = [] {
    id nothing = nil;
    [[NSMutableArray array] addObject:nothing];
  };
  [&]() noexcept { raise(); }();
}

TEST(IssuesReporterDeathTest, ReportsAnExceptionOfFoundation) {
  EXPECT_EXIT(endByFoundation(), testing::KilledBySignal(SIGABRT),
              "Ended by an uncaught exception: NSInvalidArgumentException: ");
}
}  // namespace
}  // namespace wendle
