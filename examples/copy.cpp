// copy.cpp - the primitives under test. In a file of their own, so that what is measured is the call.

#include "copy.h"

#include <string.h>

int copy_16s(Kel16s const *src, Kel16s *dst, int len) {
    if (len < 1) return -1;
    memcpy(dst, src, sizeof(Kel16s) * static_cast<size_t>(len));
    return 0;
}

int copyImage_8u_C1R(Kel8u const *src, int srcStep, Kel8u *dst, int dstStep, KeliSize roi) {
    if (roi.width < 1 || roi.height < 1) return -1;
    for (int y = 0; y < roi.height; ++y, src += srcStep, dst += dstStep) memcpy(dst, src, roi.width);
    return 0;
}
