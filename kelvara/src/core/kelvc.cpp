// kelvc.cpp - the version record of libkelvc.

#include "kelvc.h"
#include "version.h"

const KelLibraryVersion *kelvcGetLibVersion(void) {
    static const KelLibraryVersion version = kelvara::versionOf("libkelvc.so");
    return &version;
}
