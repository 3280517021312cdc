// scan.cpp - the exported scans of coefficients.

#include "scan.h"
#include "block8x8.h"
#include "checks.h"
#include "kelvc.h"

using namespace kelvara;

KelStatus keliScanFwd_16s_C1(const Kel16s *pSrc, Kel16s *pDst, int countNonZero, int scan) {
    if (anyNull(pSrc, pDst)) return kelStsNullPtrErr;
    if (countNonZero < 0 || countNonZero > 64 || !isScan(scan)) return kelStsRangeErr;
    const Block8x8<Kel16s> block(pSrc);
    Block8x8<Kel16s> scanned{};
    for (int i = 0, left = countNonZero; i < 64 && left > 0; ++i) {
        scanned.at[i] = block.at[scanOrders[scan][i]];
        if (scanned.at[i] != 0) --left;
    }
    scanned.storeTo(pDst);
    return kelStsNoErr;
}

KelStatus keliScanInv_16s_C1(const Kel16s *pSrc, Kel16s *pDst, int indxLastNonZero, int scan) {
    if (anyNull(pSrc, pDst)) return kelStsNullPtrErr;
    if (indxLastNonZero < -1 || indxLastNonZero > 63 || !isScan(scan)) return kelStsRangeErr;
    const Block8x8<Kel16s> scanned(pSrc);
    Block8x8<Kel16s> block{};
    for (int i = 0; i <= indxLastNonZero; ++i) block.at[scanOrders[scan][i]] = scanned.at[i];
    block.storeTo(pDst);
    return kelStsNoErr;
}
