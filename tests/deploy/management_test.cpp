// What management tools are given: a privacy profile, Munki's pkginfo, Jamf's scripts.
#include <gtest/gtest.h>

#include "deploy_mac.h"

namespace wendle::test {
namespace {
using mac::SessionResult;
using mac::SimulatedMac;

std::string runShell(SimulatedMac& mac, const std::string& line, bool asRoot = true) {
  const SessionResult seen = mac.run("/bin/sh", {"-c", line}, {.asRoot = asRoot});
  return seen.outcome + "\n" + seen.out;
}

TEST(PrivacyProfileTest, GrantsTheTwoServicesToTheSignedUninstallerOnly) {
  const std::string requirement =
      R"(identifier "com.a.B-c" and anchor apple generic and certificate 1[field.1.2.840.113635.100.6.2.6] /* exists */ )"
      R"(and certificate leaf[field.1.2.840.113635.100.6.1.13] /* exists */ and certificate leaf[subject.OU] = "ABCDE12345")";
  SimulatedMac mac = SimulatedMac::scratch();
  installTools(mac);
  const std::string make = tools + "make-privacy-profile";
  const auto codesign = [&](const std::string& said) {
    addExecutable(mac, "/usr/bin/codesign", "#!/bin/sh\necho '" + said + "'\n");
  };
  codesign("designated => " + requirement);
  const std::string ofProgram = runShell(mac, make + " /program", false);
  EXPECT_EQ(runShell(mac, make + " com.a.B-c ABCDE12345", false), ofProgram);
  codesign("# designated => " + requirement);
  EXPECT_EQ(runShell(mac, make + " /program", false), ofProgram);
  const mac::Plist profile = mac::parsePlist(ofProgram.substr(std::string("exit 0\n").size()));
  ASSERT_NE(profile, nullptr) << ofProgram;
  for (const char* service : {"SystemPolicyAllFiles", "SystemPolicyAppBundles"}) {
    plist_t grant = plist_access_path(profile.get(), 5, "PayloadContent", 0, "Services", service, 0);
    EXPECT_EQ(mac::toText(grant, "CodeRequirement"), requirement) << service;
    EXPECT_EQ(mac::toText(grant, "Identifier"), tools + "WendleUninstaller") << service;
  }

  codesign("designated => identifier \"a&b<c>\" and anchor apple");
  EXPECT_NE(runShell(mac, make + " /program", false).find("\"a&amp;b&lt;c&gt;\""), std::string::npos);
  codesign("# designated => cdhash H\"00\"");
  for (const char* words :
       {" /program", "", " com.a.B ABCDE1234", " 'com.a\"' ABCDE12345", " a ABCDE12345 c"})
    EXPECT_EQ(runShell(mac, make + words, false), "exit 2\n") << words;
}

// The report says nothing and exits with the status that stands for `case`.
std::string reportThatExits(int status) { return "#!/bin/sh\nexit " + std::to_string(status) + "\n"; }

TEST(MunkiTest, UninstallsUntilNothingIsKnownToBeLeft) {
  SimulatedMac mac = SimulatedMac::scratch();
  installTools(mac);
  const mac::Plist info =
      mac::parsePlist(mac::readFile(std::string(DEPLOY_DIRECTORY) + "/munki-pkginfo.plist"));
  ASSERT_NE(info, nullptr);
  for (const char* script : {"uninstallcheck_script", "uninstall_script", "installcheck_script"})
    addExecutable(mac, std::string("/") + script, mac::toText(info.get(), script));
  const auto isNeeded = [&](int status) {
    addExecutable(mac, tools + "wendle-uninstall-report", reportThatExits(status));
    return runShell(mac, "/uninstallcheck_script");
  };
  EXPECT_EQ(isNeeded(0), "exit 1\n");
  EXPECT_EQ(isNeeded(1), "exit 0\n");
  EXPECT_EQ(isNeeded(2), "exit 0\n");
  mac.addFile(mac::consoleUserFile, "");
  EXPECT_EQ(isNeeded(0), "exit 0\n");
  EXPECT_EQ(runShell(mac, "/installcheck_script"), "exit 1\n");
  addExecutable(mac, tools + "uninstall-for-console-user", "#!/bin/sh\necho \"$@\"; exit 3\n");
  EXPECT_EQ(runShell(mac, "/uninstall_script"), "exit 3\n--hard\n");
}

TEST(JamfTest, TellsWhatIsLeftAndRunsTheMode) {
  SimulatedMac mac = SimulatedMac::scratch();
  installTools(mac);
  const std::string attribute = tools + "jamf-extension-attribute";
  const std::vector<std::string> results{"nothing", "something", "unknown"};
  for (std::size_t status = 0; status < results.size(); ++status) {
    addExecutable(mac, tools + "wendle-uninstall-report", reportThatExits(static_cast<int>(status)));
    EXPECT_EQ(runShell(mac, attribute), "exit 0\n<result>" + results[status] + "</result>\n");
  }
  mac.addFile(mac::consoleUserFile, "");
  EXPECT_EQ(runShell(mac, attribute), "exit 0\n<result>nobody logged in</result>\n");
  addExecutable(mac, tools + "uninstall-for-console-user", "#!/bin/sh\necho \"$@\"; exit 1\n");
  EXPECT_EQ(runShell(mac, tools + "jamf-policy / mac pat"), "exit 1\n--hard\n");
  EXPECT_EQ(runShell(mac, tools + "jamf-policy / mac pat --soft"), "exit 1\n--soft\n");
}
}  // namespace
}  // namespace wendle::test
