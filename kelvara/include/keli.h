// keli.h - images: the library that the video functions' plain image types belong to (libkeli.so).

#ifndef KELI_H
#define KELI_H

#include "keltypes.h"

#ifdef __cplusplus
extern "C" {
#endif

// clang-format off

// The version record of this library; it lives as long as the library.
KELAPI const KelLibraryVersion *keliGetLibVersion(void);

// clang-format on

#ifdef __cplusplus
}
#endif

#endif
