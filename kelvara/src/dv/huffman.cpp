// huffman.cpp - the table for decoding the codes of DV.

#include "../common/checks.h"
#include "../common/samples.h"
#include "../common/vlctable.h"
#include "kelvc.h"

#include <cstdlib>
#include <new>

namespace kelvara {

// Bits below the highest one of a number other than 0.
static int bitsBelowMarker(Kel32u code) {
    int bits = 0;
    while (code >> (bits + 1)) ++bits;
    return bits;
}

// SMPTE 314M, IEC 61834-2: a sign bit follows each code of an amplitude, 1 for a negative one.
static void appendCode(Kel32u element, std::vector<VlcCode> &codes) {
    const Kel32u marked = element >> 16;
    const int length = bitsBelowMarker(marked);
    const Kel32u code = marked - (1u << length);
    const int run = static_cast<int>(element >> 8 & 255), amplitude = static_cast<int>(element & 255);
    if (amplitude == 0) {
        codes.push_back({length, code, runLevelValue(run, 0)});
        return;
    }
    codes.push_back({length + 1, 2 * code, runLevelValue(run, amplitude)});
    codes.push_back({length + 1, 2 * code + 1, runLevelValue(run, -amplitude)});
}

static KelStatus readCodes(const Kel32u *pCodes, std::vector<VlcCode> &codes) {
    for (;; ++pCodes) {
        const auto element = load<Kel32u>(reinterpret_cast<const unsigned char *>(pCodes));
        if (element == 0) return kelStsNoErr;
        if (element >> 17 == 0 || (element >> 8 & 255) > 127) return kelStsRangeErr;
        appendCode(element, codes);
    }
}

static KelStatus initTable(const Kel32u *pCodes1, const Kel32u *pCodes2, Kel32u **ppTable) {
    if (anyNull(pCodes1, pCodes2) || anyNull(ppTable)) return kelStsNullPtrErr;
    try {
        std::vector<VlcCode> codes;
        KelStatus status = readCodes(pCodes1, codes);
        if (status == kelStsNoErr) status = readCodes(pCodes2, codes);
        Kel32s *table = nullptr;
        if (status == kelStsNoErr) status = buildVlcTable(codes, &table);
        if (status == kelStsNoErr) *ppTable = reinterpret_cast<Kel32u *>(table);
        return status;
    } catch (const std::bad_alloc &) {
        return kelStsMemAllocErr;
    }
}

} // namespace kelvara

using namespace kelvara;

KelStatus keliInitAllocHuffmanTable_DV_32u(const Kel32u *pCodes1, const Kel32u *pCodes2, Kel32u **ppTable) {
    return initTable(pCodes1, pCodes2, ppTable);
}

void keliFreeHuffmanTable_DV_32u(Kel32u *pTable) {
    std::free(pTable);
}
