// warping.h - where the samples of a sprite or of global motion come from.

#ifndef KELVARA_MPEG4_WARPING_H
#define KELVARA_MPEG4_WARPING_H

#include "kelvc_mpeg4.h"

namespace kelvara {

// Products of four coordinates leave 64 bits.
__extension__ typedef __int128 Wide;

// A coordinate in the sprite that is linear in the picture's: up to three points. origin holds what rounds
// the quotient: to the nearest, halves up, which is the standard's "///".
struct Linear {
    long long right, down, origin;
    int shift;

    int at(int col, int row) const { return static_cast<int>((right * col + down * row + origin) >> shift); }
};

// A linear form without its divisor.
struct Form {
    Wide right, down, origin;

    Wide at(int col, int row) const { return right * col + down * row + origin; }
};

// One that is a quotient of two: four points. The divisor is not 0 where it is asked for.
struct Quotient {
    Form numerator, divisor;

    int at(int col, int row) const;
};

// Both coordinates of the samples of a plane, counted from the picture's first one, in units of the sprite's
// accuracy.
struct Mapping {
    bool perspective;
    Linear x, y;
    Quotient px, py; // in place of x and y
};

// What lies behind KeliWarpSpec_MPEG4. Copied in and out, as it may lie at any byte.
struct WarpSpec {
    static constexpr Kel32u made = 0x4D345750;

    Kel32u mark; // made, once it is
    int points;
    int accuracy; // 0 to 3
    int rounding, quarterSample, fcode;
    KeliRect sprite, picture; // luma samples
    Mapping luma, chroma;

    int bits() const { return accuracy + 1; } // of the fraction of a position
    int unit() const { return 1 << bits(); }  // positions from one sample to the next

    // The divisors keep their sign from the sample at (x, y) to the one at (x + width, y + height).
    bool keepsSide(int x, int y, int width, int height) const;
};

// ISO/IEC 14496-2 7.8.4 and 7.8.5: the mappings of a record that holds all the rest.
void setMappings(WarpSpec &spec, const int *pDU, const int *pDV);

// False if that is no record.
bool loadSpec(const KeliWarpSpec_MPEG4 *pSpec, WarpSpec &spec);

} // namespace kelvara

#endif
