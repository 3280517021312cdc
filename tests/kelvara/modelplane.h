// modelplane.h - a plane with a macroblock in it, for the models of reconstruction.

#ifndef KELVARA_MODELPLANE_H
#define KELVARA_MODELPLANE_H

#include "keltypes.h"

#include <cstddef>
#include <vector>

// A plane with the macroblock's first sample somewhere in it.
struct ModelPlane {
    int at(int x, int y) const { return bytes[static_cast<size_t>(origin + y * step + x)]; }
    void set(int x, int y, long long value) {
        bytes[static_cast<size_t>(origin + y * step + x)] = static_cast<Kel8u>(value < 0     ? 0
                                                                               : value > 255 ? 255
                                                                                             : value);
    }
    Kel8u *macroblock() { return bytes.data() + origin; }
    const Kel8u *macroblock() const { return bytes.data() + origin; }

    int step, origin;
    std::vector<Kel8u> bytes;
};

#endif
