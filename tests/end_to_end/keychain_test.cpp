#include "difference.h"

namespace wendle::test {
namespace {

const std::string started = progress("Delete needed keychain items - started");

std::string security(const std::string& verb, const std::string& label, int status) {
  return "/usr/bin/security [" + verb + "] [-l] [" + label + "] [" + library +
         "/Keychains/login.keychain] exit " + std::to_string(status);
}
std::string find(const std::string& label, int status) {
  return security("find-generic-password", label, status);
}
std::string remove(const std::string& label, int status) {
  return security("delete-generic-password", label, status);
}

std::string item(const std::string& label) {
  return "Delete Keychain Item - " + label + " - at " + library + "/Keychains/login.keychain";
}

std::function<void(SimulatedMac&)> items(const Lines& labels, const std::vector<Fault>& misbehaviour = {}) {
  return [=](SimulatedMac& mac) {
    for (const std::string& label : labels) mac.addKeychainItem(label);
    faults(misbehaviour)(mac);
  };
}

std::string statusError(int status, const std::string& text) {
  return ": Error Domain=NSOSStatusErrorDomain Code=" + std::to_string(status) + " \"" + text + "\"";
}

INSTANTIATE_TEST_SUITE_P(
    Keychain, DifferenceTest,
    testing::ValuesIn<Difference>({
        {"ThreeItemsOfALabel",
         "soft",
         items({"WendleAgent", "WendleAgent", "WendleAgent", "WendleAgentOther"}),
         {after(started, Lines(3, progress(item("WendleAgent") + " - success")))},
         {{find("WendleAgent", 44),
           {find("WendleAgent", 0), remove("WendleAgent", 0), find("WendleAgent", 0),
            remove("WendleAgent", 0), find("WendleAgent", 0), remove("WendleAgent", 0),
            find("WendleAgent", 44)}}}},
        {"AFailingDeletionEndsItsLabelOnly",
         "soft",
         items({"Wendle", "Wendle", "WendleTeamManagement"},
               {{"security", 2, FaultKind::exits, 25, " denied.\n"}}),
         {after(started, {error(item("Wendle") + statusError(25, "denied.")),
                          progress(item("WendleTeamManagement") + " - success")})},
         {{find("Wendle", 44), {find("Wendle", 0), remove("Wendle", 25)}},
          {find("WendleTeamManagement", 44),
           {find("WendleTeamManagement", 0), remove("WendleTeamManagement", 0),
            find("WendleTeamManagement", 44)}}}},
        {"AnErrorThatIsNoText",
         "soft",
         items({"Wendle"}, {{"security", 2, FaultKind::exits, 25, "\xff"}}),
         {after(started, {error(item("Wendle") + statusError(25, "No description"))})},
         {{find("Wendle", 44), {find("Wendle", 0), remove("Wendle", 25)}}}},
        {"AFailingFindPassesTheLabelOver",
         "soft",
         items({"Wendle"}, {{"security", 1, FaultKind::exits, 1}}),
         {},
         {{find("Wendle", 44), {find("Wendle", 1)}}}},
        {"MissingSecurity",
         "soft",
         faults({{"security"}}),
         {},
         {},
         {},
         {},
         cannotStart("/usr/bin/security"),
         started,
         "/usr/bin/mdfind [kMDItemCFBundleIdentifier == com.wendle.DesktopClient.WendleAssistant] exit 0"},
    }),
    nameOf);

}  // namespace
}  // namespace wendle::test
