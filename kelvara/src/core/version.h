// version.h - what a library of this build says of itself.

#ifndef KELVARA_VERSION_H
#define KELVARA_VERSION_H

#include "keltypes.h"

namespace kelvara {

// KELVARA_ARCH_NAME is the processor level that the build was made for, so that reports of two builds differ.
inline KelLibraryVersion versionOf(const char *library) {
    return {2, 0, 0, library, "2.0 " KELVARA_ARCH_NAME, __DATE__};
}

} // namespace kelvara

#endif
