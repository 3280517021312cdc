// copy.h - the primitives under test: copies of a vector and of an image.

#ifndef COPY_H
#define COPY_H

#include "keltypes.h"

// Both return 0, or -1 for a length or a size below 1. The areas do not overlap. Steps are in bytes.
int copy_16s(Kel16s const *src, Kel16s *dst, int len);
int copyImage_8u_C1R(Kel8u const *src, int srcStep, Kel8u *dst, int dstStep, KeliSize roi);

#endif
