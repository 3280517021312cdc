// loopfilter.cpp - the exported loop filter of H.261.

#include "kelvc.h"
#include "../common/checks.h"
#include "../common/samples.h"

namespace kelvara {

// ITU-T H.261 3.2.3: taps 1, 2, 1 in quarters; at the border of the block 0, 4, 0.
static inline int filtered(int before, int at, int behind, int position) {
    return position == 0 || position == 7 ? 4 * at : before + 2 * at + behind;
}

static void filterLoop(Samples<Kel8u> src, Target<Kel8u> dst) {
    int columns[8][8]; // filtered along the columns, in quarters
    for (int row = 0; row < 8; ++row) {
        const int above = row > 0 ? row - 1 : row, below = row < 7 ? row + 1 : row;
        for (int col = 0; col < 8; ++col)
            columns[row][col] = filtered(src(above, col), src(row, col), src(below, col), row);
    }
    for (int row = 0; row < 8; ++row) {
        for (int col = 0; col < 8; ++col) {
            const int left = col > 0 ? col - 1 : col, right = col < 7 ? col + 1 : col;
            const int *line = columns[row];
            dst.set(row, col, (filtered(line[left], line[col], line[right], col) + 8) >> 4);
        }
    }
}

} // namespace kelvara

using namespace kelvara;

KelStatus keliFilter8x8_H261_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep) {
    if (anyNull(pSrc, pDst)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(srcStep, 8) || tooNarrow<Kel8u>(dstStep, 8)) return kelStsStepErr;
    filterLoop(Samples<Kel8u>(pSrc, srcStep), Target<Kel8u>(pDst, dstStep));
    return kelStsNoErr;
}
