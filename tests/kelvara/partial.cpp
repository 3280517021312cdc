// partial.cpp - a libkelvc of an older day: it lacks most functions.

#include "kelvc.h"

const KelLibraryVersion *kelvcGetLibVersion(void) {
    static const KelLibraryVersion version = {1, 0, 0, "libkelvc.so", "1.0 partial", "Jan  1 2000"};
    return &version;
}

KelStatus keliSAD16x16_8u32s(const Kel8u *, int, const Kel8u *, int, Kel32s *, int) {
    return kelStsNotSupportedErr;
}
