// countzeros.cpp - the number of coefficients that are 0.

#include "block8x8.h"
#include "checks.h"
#include "kelvc.h"
#include "samples.h"

using namespace kelvara;

KelStatus keliCountZeros8x8_16s_C1(const Kel16s *pSrc, int *pCount) {
    if (anyNull(pSrc) || anyNull(pCount)) return kelStsNullPtrErr;
    const Block8x8<Kel16s> block(pSrc);
    store<int>(pCount, static_cast<int>(std::count(block.at, block.at + 64, 0)));
    return kelStsNoErr;
}
