// quantspec.h - the quantiser of MPEG-4 coefficients, as the library makes it for a test.

#ifndef RAKOVA_QUANTSPEC_H
#define RAKOVA_QUANTSPEC_H

#include "kmvc.h"

// For which of the library's functions.
struct QuantForm {
    bool inverse, intra;
};

// A tracked block with the quantiser for 64 weights. False, after the library's message if it has one, where
// there is none to be had.
bool createQuantSpec(KeliQuantSpec_MPEG4 *&spec, QuantForm form, Kel8u const *weights, int bitsPerPixel);
void deleteQuantSpec(KeliQuantSpec_MPEG4 *&spec);

#endif
