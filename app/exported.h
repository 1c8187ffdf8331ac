#pragma once

// Marks what the executable exports under its plain C name; all else is hidden.
#define WENDLE_EXPORTED extern "C" __attribute__((visibility("default")))
