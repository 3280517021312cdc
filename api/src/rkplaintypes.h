// rkplaintypes.h - the two plain types of the library that the framework handles, for builds without it.

#ifndef RAKOVA_RKPLAINTYPES_H
#define RAKOVA_RKPLAINTYPES_H

#include "rkstring.h"

// The library's own header defines the same two under the same guard.
#ifndef KEL_PLAIN_TYPES_DEFINED
#define KEL_PLAIN_TYPES_DEFINED

struct KeliSize {
    int width;
    int height;
};

struct KelLibraryVersion {
    int major;
    int minor;
    int build;
    const char *Name;
    const char *Version;
    const char *BuildDate;
};

#endif

rkString &operator<<(rkString &text, KeliSize size); // "%dx%d"
// Two positive numbers between any of " {}()x,"; anything else sets failed() of the text.
KeliSize &operator<<(KeliSize &size, rkString &text);

#endif
