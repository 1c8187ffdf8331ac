#pragma once

namespace wendle {

// The uninstaller and its four modes. A mode is one fixed sequence of steps; it returns when the last has
// returned. No step reports a failure here: each logs its own, and the next one runs whatever happened.
class WendleUninstaller {
 public:
  // The one instance. Making it connects the issue reporter to the log.
  [[nodiscard]] static WendleUninstaller& shared();

  void runInUpdatesMode();  // the search extension's traces only
  void runInSoftMode();     // keep applications
  void runInHardMode();     // uninstall completely
  void runInFullMode();     // and every copy of the applications, wherever it lies

 private:
  WendleUninstaller();
};

}  // namespace wendle
