#pragma once

// What the executable exports under plain C names; for C, C++ and Objective-C.

#ifdef __cplusplus
#define WENDLE_EXPORTED extern "C" __attribute__((visibility("default")))
#else
#define WENDLE_EXPORTED extern __attribute__((visibility("default")))
#endif

// Runs the mode that this process's arguments choose, to its end, on the calling thread. Without a mode
// switch it does nothing and says nothing.
WENDLE_EXPORTED void AFXUninstallerHandleArguments(void);

WENDLE_EXPORTED const double WendleUninstallerVersionNumber;
WENDLE_EXPORTED const unsigned char WendleUninstallerVersionString[];  // what(1) finds it
