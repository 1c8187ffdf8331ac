#include "app/WendleUninstaller.h"

const double WendleUninstallerVersionNumber = 99.0;

// what(1) finds it by its first four characters.
const unsigned char WendleUninstallerVersionString[] =
    "@(#)PROGRAM:WendleUninstaller  PROJECT:Applications-99\n";
