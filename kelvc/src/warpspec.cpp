// warpspec.cpp - the description of an MPEG-4 warping.

#include "warpspec.h"

static const int staticSprite = 1, rounding = 0, quarterSample = 0, fcode = 1;

static bool passes(KelStatus status, char const *function) {
    return !rkIsError(kmTest::checkStatus(status, function));
}

// The library may lack both functions.
bool createWarpSpec(KeliWarpSpec_MPEG4 *&spec, int const *du, int const *dv, int points, int accuracy,
                    KeliRect const &sprite, KeliRect const &picture) {
    spec = nullptr;
    if (!keliWarpGetSize_MPEG4 || !keliWarpInit_MPEG4) return false;
    int size = 0;
    if (!passes(keliWarpGetSize_MPEG4(&size), "keliWarpGetSize_MPEG4")) return false;
    spec = static_cast<KeliWarpSpec_MPEG4 *>(rkMalloc(size, 0, 0, nullptr));
    if (!spec) return false;
    return passes(keliWarpInit_MPEG4(spec, du, dv, points, staticSprite, accuracy, rounding, quarterSample,
                                     fcode, &sprite, &picture),
                  "keliWarpInit_MPEG4");
}

void deleteWarpSpec(KeliWarpSpec_MPEG4 *&spec) {
    rkFree(spec);
    spec = nullptr;
}
