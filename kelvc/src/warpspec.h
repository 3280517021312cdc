// warpspec.h - the description of an MPEG-4 warping, as the library makes it for a test.

#ifndef RAKOVA_WARPSPEC_H
#define RAKOVA_WARPSPEC_H

#include "kmvc.h"

// A tracked block with the description for a static sprite; the differentials are in half samples, one for
// each point. False, after the library's message if it has one, where there is no description to be had.
bool createWarpSpec(KeliWarpSpec_MPEG4 *&spec, int const *du, int const *dv, int points, int accuracy,
                    KeliRect const &sprite, KeliRect const &picture);
void deleteWarpSpec(KeliWarpSpec_MPEG4 *&spec);

#endif
