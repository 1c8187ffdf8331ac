#pragma once

#include "app/exported.h"

WENDLE_EXPORTED const double WendleUninstallerVersionNumber;
WENDLE_EXPORTED const unsigned char WendleUninstallerVersionString[];
