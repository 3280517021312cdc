// kels.cpp - memory and copies.

#include "kels.h"

#include <cstdlib>
#include <cstring>

static constexpr size_t alignment = 64;

Kel16s *kelsMalloc_16s(int length) {
    if (length < 1) return nullptr;
    const size_t bytes = static_cast<size_t>(length) * sizeof(Kel16s);
    return static_cast<Kel16s *>(std::aligned_alloc(alignment, (bytes + alignment - 1) & ~(alignment - 1)));
}

void kelsFree(void *p) {
    std::free(p);
}

KelStatus kelsCopy_16s(const Kel16s *pSrc, Kel16s *pDst, int length) {
    if (!pSrc || !pDst) return kelStsNullPtrErr;
    if (length < 1) return kelStsSizeErr;
    std::memmove(static_cast<void *>(pDst), pSrc, static_cast<size_t>(length) * sizeof(Kel16s));
    return kelStsNoErr;
}
