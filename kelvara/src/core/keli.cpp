// keli.cpp - the version record of libkeli.

#include "keli.h"
#include "version.h"

const KelLibraryVersion *keliGetLibVersion(void) {
    static const KelLibraryVersion version = kelvara::versionOf("libkeli.so");
    return &version;
}
