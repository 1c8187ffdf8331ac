#pragma once

namespace wendle {

// Makes the process independent of the state its launcher started it in; the first thing that main does.
// Descriptors 0, 1 and 2 are opened on /dev/null where they are closed, so that no file of ours takes their
// number; an inherited "ignore" of SIGCHLD, which would lose the exit status of every tool (wait(2)), is
// undone; a file size limit fails a write instead of ending the process.
//
// And it leaves its launcher's process group: macOS kills what is left in the group of an application that
// has ended (launchd.plist(5), AbandonProcessGroup), and the application that starts us is one that we ask to
// quit. Where that fails the process leads a group already. A terminal's Ctrl-C does not reach us any more.
void settleProcess();

}  // namespace wendle
