// kels.h - one-dimensional data: memory and copies (libkels.so).

#ifndef KELS_H
#define KELS_H

#include "keltypes.h"

#ifdef __cplusplus
extern "C" {
#endif

// clang-format off

// kelsMalloc_16s returns room for `length` elements at an address that is a multiple of 64, with undefined
// contents; null for a length below 1 or when there is no memory. The caller releases it by kelsFree, which
// takes null too.
KELAPI Kel16s *kelsMalloc_16s(int length);
KELAPI void kelsFree(void *p);

// Copies `length` elements; the areas may overlap. kelStsNullPtrErr for a null pointer, kelStsSizeErr for a
// length below 1; nothing is written then.
KELAPI KelStatus kelsCopy_16s(const Kel16s *pSrc, Kel16s *pDst, int length);

// clang-format on

#ifdef __cplusplus
}
#endif

#endif
