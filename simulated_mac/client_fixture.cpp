#include "simulated_mac/client_fixture.h"

namespace wendle::mac {
void installClient(SimulatedMac& mac) { installItems(mac, clientItems()); }

void installItems(SimulatedMac& mac, const std::vector<Item>& items) {
  for (const auto& [kind, place, detail, why, family, letters] : items) {
    if (kind == "bundle") mac.addBundle(place, detail);
    if (kind == "file") mac.addFile(place, "content of " + place);
    if (kind == "folder") mac.addDirectory(place);
    if (kind == "link") mac.addLink(place, detail);
    if (kind == "preferences") mac.addPropertyList(place, "<dict><key>first run</key><false/></dict>", true);
    if (kind == "launch agent") mac.addLaunchAgent(std::filesystem::path(place).stem());
    if (kind == "keychain item") mac.addKeychainItem(place, detail);
    if (kind == "privacy approval") mac.addApproval(place);
    if (kind == "plug-in election") mac.addElection(place);
    if (kind == "Dock tile") mac.addDockTile(place, detail);
    if (kind == "process") mac.addProcess({place, detail});
    if (kind == "job process") mac.addProcess({place, detail, detail});
  }
}
}  // namespace wendle::mac
