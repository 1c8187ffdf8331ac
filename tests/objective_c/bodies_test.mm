#include <gtest/gtest.h>
#include <objc/runtime.h>
#include <unistd.h>

#include <barrier>
#include <csignal>
#include <future>
#include <iostream>
#include <regex>
#include <set>
#include <thread>

#import "app/AFXWendleUninstaller.h"
#import "app/WendleUninstallerResources.h"
#include "app/argument_dispatch.h"
#import "dock/AFXDockShortcutManager.h"
#include "logging/issues_reporter.h"
#include "logging/logger.h"
#include "platform/bookmark.h"
#include "platform/case_folding.h"
#include "platform/macos/foundation_values.h"
#include "platform/process_environment.h"
#include "platform/running_applications.h"
#import "processes/NSRunningApplication+AFXExtensions.h"

namespace wendle::test {

// A method's types: the result, the object, the selector, the arguments; empty for no such method.
static std::string typesOf(NSString* owner, const char* method) {
  Class type = NSClassFromString(owner);
  const SEL selector = sel_registerName(method + 1);
  Method found =
      *method == '+' ? class_getClassMethod(type, selector) : class_getInstanceMethod(type, selector);
  const char* types = found == nullptr ? "" : method_getTypeEncoding(found);
  return std::regex_replace(types, std::regex("[0-9]+"), "");  // without places on the stack
}

// GCC's runtime knows no class properties; their getters are what a program calls.
TEST(ExportedClasses, AnswerUnderTheirNames) {
  const std::string flag = @encode(BOOL);
  NSString *uninstaller = @"AFXWendleUninstaller", *manager = @"AFXDockShortcutManager";
  for (const char* mode : {"-runInUpdatesMode", "-runInSoftMode", "-runInHardMode", "-runInFullMode"}) {
    EXPECT_EQ(typesOf(uninstaller, mode), "v@:") << mode;
  }
  EXPECT_EQ(typesOf(uninstaller, "+shared"), "@@:");
  EXPECT_EQ(typesOf(manager, "+sharedInstance"), "@@:");
  EXPECT_EQ(typesOf(manager, "-isChangingPersistenceOfShortcutInDock"), flag + "@:");
  EXPECT_EQ(typesOf(manager, "-getPersistenceOfShortcutInDockFolderURL:"), flag + "@:@");
  EXPECT_EQ(typesOf(manager, "-changePersistenceOfShortcutInDockFolderURL:add:completion:"),
            "v@:@" + flag + "@?");
  EXPECT_EQ(typesOf(manager, "-fileURLWithFixedTrailingSlash:"), "@@:@");
  EXPECT_EQ(typesOf(@"WendleUninstallerResources", "+bundle"), "@@:");
  EXPECT_EQ(typesOf(@"NSRunningApplication", "+terminateRunningApplicationsWithBundleIdentifier:"), "v@:@");
}

TEST(ExportedClasses, HaveOneInstanceAlsoForConcurrentFirstCalls) {
  for (id (*instance)() : {+[]() -> id { return [AFXWendleUninstaller shared]; },
                           +[]() -> id { return [AFXDockShortcutManager sharedInstance]; }}) {
    constexpr int callers = 8;
    std::barrier together(callers);
    std::vector<std::future<id>> calls;
    const auto call = [&] { return together.arrive_and_wait(), instance(); };
    while (calls.size() < callers) calls.push_back(std::async(std::launch::async, call));
    std::set<id> seen;
    for (auto& each : calls) seen.insert(each.get());
    EXPECT_TRUE(seen.size() == 1 && !seen.contains(nil));
  }
  NSBundle* bundle = [WendleUninstallerResources bundle];
  EXPECT_TRUE([bundle isKindOfClass:[NSBundle class]] && bundle == [WendleUninstallerResources bundle]);
}

struct ToStandardError : LogDestination {
  void write(std::string_view record) override { std::cerr << record; }
};

// Also once somebody else has taken the reporter.
TEST(ExportedUninstaller, ConnectsTheReporterWithEveryInstance) {
  (void)[[AFXWendleUninstaller alloc] init];
  IssuesReporter::sharedInstance().setMessageLogger([](const auto& message) { std::cerr << message; });
  Logger::module().addDestination(std::make_shared<ToStandardError>());
  (void)[[AFXWendleUninstaller alloc] init];
  EXPECT_EXIT(std::terminate(), testing::KilledBySignal(SIGABRT),
              "\\[1\\] module: Ended by an uncaught exception");
}

// On a thread of its own, since the test framework catches what is raised on this one. GNUstep ends with 1.
TEST(ExportedUninstaller, ReportsAnUncaughtExceptionOfTheSystemBeforeThePreviousHandler) {
  const auto raise = [] {
    NSSetUncaughtExceptionHandler(+[](NSException*) { std::cerr << " - previous handler\n"; });
    (void)[[AFXWendleUninstaller alloc] init];
    (void)[[AFXWendleUninstaller alloc] init];
    IssuesReporter::sharedInstance().setMessageLogger([](const auto& message) { std::cerr << message; });
    std::thread([] { [NSException raise:@"Name" format:@"reason"]; }).join();
  };
  EXPECT_EXIT(raise(), testing::ExitedWithCode(1),
              "Ended by an uncaught exception: Name: reason - newest log file: .* - previous handler\n");
}

static std::pair<id, std::string> asked;

TEST(ExportedUninstaller, IsAskedByTheDispatch) {
  const auto record = [](id uninstaller, SEL method) { asked = {uninstaller, sel_getName(method)}; };
  for (const auto& [mode, name] : {std::pair{Mode::updates, "runInUpdatesMode"},
                                   {Mode::soft, "runInSoftMode"},
                                   {Mode::hard, "runInHardMode"},
                                   {Mode::full, "runInFullMode"}}) {
    Method method = class_getInstanceMethod([AFXWendleUninstaller class], sel_registerName(name));
    void (*recorder)(id, SEL) = record;
    const IMP original = method_setImplementation(method, reinterpret_cast<IMP>(recorder));
    runMode(mode);
    method_setImplementation(method, original);
    EXPECT_EQ(asked, (std::pair<id, std::string>([AFXWendleUninstaller shared], name)));
  }
}

TEST(ExportedDockShortcutManager, SpeaksForItsFlagItselfAndFixesTrailingSlashes) {
  NSString* flagKey = @"isChangingPersistenceOfShortcutInDock";
  EXPECT_FALSE([AFXDockShortcutManager automaticallyNotifiesObserversForKey:flagKey]);
  EXPECT_TRUE([AFXDockShortcutManager automaticallyNotifiesObserversForKey:@"other"]);
  AFXDockShortcutManager* manager = [AFXDockShortcutManager sharedInstance];
  NSURL* fixed = [manager fileURLWithFixedTrailingSlash:[NSURL URLWithString:@"file:///usr"]];
  EXPECT_STREQ(fixed.absoluteString.UTF8String, "file:///usr/");
  EXPECT_EQ([manager fileURLWithFixedTrailingSlash:[NSURL URLWithString:@"mailto:pat"]], nil);
}

TEST(RunningApplications, AreAskedInTheRegistrysOrderAndNoOtherIs) {
  listedApplications = {{12, @"a"}, {13, @"b"}, {14, @"A"}, {10, @"a"}};
  [NSRunningApplication terminateRunningApplicationsWithBundleIdentifier:@"a"];
  EXPECT_EQ(std::exchange(requests, ""), "terminate 12, terminate 10, ");
  listedApplications.insert(listedApplications.end(), {{11, @"b"}, {::getpid(), @"a"}});
  for (const auto& found : runningApplicationsWithBundleIdentifier("a")) {
    EXPECT_TRUE(found.terminate() && found.forceTerminate());
  }
  EXPECT_EQ(requests, "terminate 12, forceTerminate 12, terminate 10, forceTerminate 10, ");
}

TEST(FoundationPropertyList, KeepsEveryKindAndValue) {
  PropertyListArray all{
      {std::string("é\0😀", 7)}, {PropertyListData{{"\0\xFF", 2}}}, {true}, {PropertyListArray{}}};
  for (const std::int64_t number : {INT64_MIN, INT64_C(-1), INT64_C(0), INT64_C(1), INT64_MAX})
    all.push_back({number});
  for (const std::uint64_t number : {UINT64_C(1) << 63U, UINT64_MAX}) all.push_back({number});
  for (const double number : {-0.5, 0.0, 1.0, 2.0, 0.1, 1e300}) all.push_back({number});
  for (const double number : {-0.5, 2.0, 7e8}) all.push_back({PropertyListDate{number}});
  all.push_back({PropertyListDictionary{{"", {all}}, {"ключ", {false}}}});
  for (const PropertyList& list : all)
    EXPECT_EQ(toPropertyList(toFoundation(list)), list) << list.value.index();
  EXPECT_EQ(toPropertyList(toFoundation({all})), PropertyList{all});
}

TEST(FoundationPropertyList, ReadsTheNumbersOfOthersAndNothingThatIsNone) {
  EXPECT_EQ(toPropertyList([NSNumber numberWithUnsignedLongLong:1]), PropertyList{std::int64_t{1}});
  EXPECT_EQ(toPropertyList([NSNumber numberWithUnsignedInt:UINT32_MAX]),
            PropertyList{std::int64_t{UINT32_MAX}});
  EXPECT_EQ(toPropertyList([NSNumber numberWithFloat:2]), PropertyList{2.0});
  NSNull* null = [NSNull null];
  EXPECT_EQ(toPropertyList([NSArray arrayWithObject:null]), std::nullopt);
  EXPECT_EQ(toPropertyList([NSDictionary dictionaryWithObject:null forKey:@"key"]), std::nullopt);
  EXPECT_EQ(toPropertyList([NSDictionary dictionaryWithObject:@"x" forKey:null]), std::nullopt);
}

// GNUstep decomposes nothing, and takes a link to a directory for the directory.
TEST(FoundationFileUrl, EscapesAndKeepsThePath) {
  const auto urlAndPath = [](const FileUrl& url) { return url.absoluteString() + " " + url.path(); };
  const auto read = [&](const char* path) { return urlAndPath(FileUrl::fileUrlWithPath(path)); };
  EXPECT_EQ(read("/no where/;100%"), "file:///no%20where/%3B100%25 /no where/;100%");
  EXPECT_EQ(read("/nowhere/é/"), "file:///nowhere/%C3%A9/ /nowhere/é");
  EXPECT_EQ(read("/usr"), "file:///usr/ /usr");
  EXPECT_EQ(read("/"), "file:/// /");
  EXPECT_EQ(read("/\xFF\x80"), "file:///%FF%80 /\xFF\x80");
  EXPECT_EQ(read("/\xFF\x80/"), "file:///%FF%80/ /\xFF\x80");
  EXPECT_EQ(urlAndPath(FileUrl::fileUrlWithDirectoryPath("/nowhere")), "file:///nowhere/ /nowhere");
  EXPECT_EQ(bookmarkData(FileUrl::fileUrlWithPath("/no where")), std::nullopt);
}

// GNUstep lowers no letter beyond the first plane, and the Kelvin sign does not match `k`.
TEST(FoundationText, KeepsBytesThatAreNoUtf8AndLowersAllLetters) {
  EXPECT_TRUE(processArguments().at(0).ends_with("/objective_c_tests"));
  EXPECT_EQ(toUtf8(toNSString("a\xFFz")), "aÿz");
  EXPECT_EQ(lowercased("AbZ@[09 ÉЖ\u212A\xFF\xC3Z\xE2\x84"), "abz@[09 éжk\xFF\xC3z\xE2\x84");
  EXPECT_TRUE(
      std::regex_match(makeUniqueIdentifier(), std::regex("[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}")));
  EXPECT_TRUE(containsIgnoringCase("/Mac.BacKupDB/É", ".backUPdb/é"));
  EXPECT_FALSE(containsIgnoringCase("/Mac.backup/db", ".backupdb"));
}

}  // namespace wendle::test
