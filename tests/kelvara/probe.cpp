// probe.cpp - a program that asks which functions the library has that it was started with.

#define KEL_WEAK_IMPORT
#include "kelcore.h"
#include "keli.h"
#include "kels.h"
#include "kelvc.h"

#include <cstdio>

static void tell(const char *name, bool present) {
    std::printf("%s %s\n", name, present ? "present" : "missing");
}

static void tellVersion(const KelLibraryVersion *(*version)(void)) {
    if (version) std::printf("%s, %s, %s\n", version()->Name, version()->Version, version()->BuildDate);
}

int main() {
    tell("kelvcGetLibVersion", kelvcGetLibVersion != nullptr);
    tell("keliSAD16x16_8u32s", keliSAD16x16_8u32s != nullptr);
    tell("keliSAD4x4_8u32s", keliSAD4x4_8u32s != nullptr);
    tell("kelInit", kelInit != nullptr);
    tell("kelsFree", kelsFree != nullptr);
    tellVersion(keliGetLibVersion);
    tellVersion(kelvcGetLibVersion);
    return 0;
}
