// Beside everything that a mode takes away lies something with a name much like it.
#include "course.h"

namespace wendle::test {
namespace {

const std::string documents = "/Users/pat/Documents";

// What may be put behind a name, and before one. In a folder of containers every folder that begins with the
// client's prefix goes, so what lies behind a name makes files and links only.
const Lines endings{"X", "2", " ", "\n", ".bak", "e\u0301", "\U0001F614", "\xff"};
const Lines beginnings{"X", " ", ".", "\n", "e\u0301", "\U0001F614", "\xff"};

std::string otherCase(std::string name) {
  name[0] = static_cast<char>(name[0] ^ ' ');
  return name;
}

void addDecoysBeside(SimulatedMac& mac, const std::filesystem::path& place) {
  const std::string folder = place.parent_path().string() + "/";
  const std::string name = place.filename();
  Lines folders{otherCase(name), "com.wendleX." + name, "com.fabrikam." + name};
  for (const std::string& beginning : beginnings) folders.push_back(beginning + name);
  for (const std::string& decoy : folders) {
    if (!mac.exists(folder + decoy)) mac.addFile(folder + decoy + "/" + name, "decoy");
  }
  for (const std::string& ending : endings) {
    if (!mac.exists(folder + name + ending)) mac.addFile(folder + name + ending, "decoy");
    if (!mac.exists(folder + name + ending + "@")) mac.addLink(folder + name + ending + "@", documents);
  }
}

// Bundles, keychain items and the like that share a prefix with the client's.
void addDecoyRecords(SimulatedMac& mac, const mac::Item& item) {
  for (const std::string& ending : endings) {
    if (ending == "\xff") continue;  // no text for a property list
    if (item.kind == "bundle")
      mac.addBundle(documents + "/" + item.detail + ending + ".app", item.detail + ending);
    if (item.kind == "keychain item") mac.addKeychainItem(item.place + ending, item.detail);
    if (item.kind == "privacy approval") mac.addApproval(item.place + ending);
    if (item.kind == "plug-in election") mac.addElection(item.place + ending);
  }
}

class DecoysTest : public testing::TestWithParam<std::string> {};

TEST_P(DecoysTest, AreAllLeftAlone) {
  SimulatedMac mac = SimulatedMac::scratch();
  mac::installClient(mac);
  for (const mac::Item& item : mac::clientItems()) {
    if (item.removedBy != mac::noMode && item.place.starts_with("/")) addDecoysBeside(mac, item.place);
    if (item.removedBy != mac::noMode) addDecoyRecords(mac, item);
  }
  const mac::Snapshot before = mac.snapshot();
  const RunResult seen = runUninstaller(mac, {"--" + GetParam()});

  EXPECT_EQ(seen.outcome, "exit 0");
  expectItsListOnly(mac, {"--" + GetParam()}, before, seen);
}

INSTANTIATE_TEST_SUITE_P(Modes, DecoysTest, testing::ValuesIn(modes), [](const auto& c) { return c.param; });

}  // namespace
}  // namespace wendle::test
