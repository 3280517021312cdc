// deblocking.cpp - the exported deblocking filters of VC-1.

#include "../common/edges.h"
#include "kelvc.h"

#include <algorithm>

namespace kelvara {
namespace vc1 {

// ---- kernel ----------------------------------------------------------------------

// SMPTE 421M 8.6: how uneven four samples in a row are.
static int strength(int a, int b, int c, int d) {
    return (2 * (a - d) - 5 * (b - c) + 4) >> 3;
}

// The change of the samples next to the edge: towards each other, but not past their middle. Divisions go
// towards 0.
static int change(int a0, int a3, int middle) {
    const int d = 5 * ((a0 < 0 ? -a3 : a3) - a0) / 8;
    return middle > 0 ? std::clamp(d, 0, middle) : std::clamp(d, middle, 0);
}

// SMPTE 421M 8.6. False if the line shows no edge of blocks, also for the lines that it decides for.
static bool filterLine(Line line, int pQuant) {
    const int a0 = strength(line.p(1), line.p(0), line.q(0), line.q(1));
    if (std::abs(a0) >= pQuant) return false;
    const int a1 = std::abs(strength(line.p(3), line.p(2), line.p(1), line.p(0)));
    const int a2 = std::abs(strength(line.q(0), line.q(1), line.q(2), line.q(3)));
    const int a3 = std::min(a1, a2);
    if (a3 >= std::abs(a0)) return false;
    const int p0 = line.p(0), q0 = line.q(0), middle = (p0 - q0) / 2;
    if (middle == 0) return false;
    const int d = change(a0, a3, middle);
    line.setP(0, p0 - d);
    line.setQ(0, q0 + d);
    return true;
}

const int segmentLines = 4;
const int reach = 8; // samples of a line that a filter looks at

// The third line decides.
static void filterSegment(Kel8u *first, std::ptrdiff_t across, std::ptrdiff_t along, int pQuant) {
    if (!filterLine(Line(first + 2 * along, across), pQuant)) return;
    for (int line : {0, 1, 3}) filterLine(Line(first + line * along, across), pQuant);
}

// ---- edges -----------------------------------------------------------------------

enum { LumaLines = 16, ChromaLines = 8 };

// A flag for each colour.
template <int lines, Direction direction, int channels>
static KelStatus deblock(Kel8u *p, int pQuant, int step, const int (&edgeDisableFlags)[channels]) {
    const int segments = lines / segmentLines, samplesOfRow = direction == VerEdge ? reach : lines;
    if (anyNull(p)) return kelStsNullPtrErr;
    if (step < channels * samplesOfRow) return kelStsStepErr;
    if (pQuant < 1 || pQuant > 31) return kelStsRangeErr;
    for (int flag : edgeDisableFlags) {
        if (flag < 0 || flag >= 1 << segments) return kelStsRangeErr;
    }
    const std::ptrdiff_t across = direction == VerEdge ? channels : step;
    const std::ptrdiff_t along = direction == VerEdge ? step : channels;
    for (int channel = 0; channel < channels; ++channel) {
        for (int n = 0; n < segments; ++n) {
            if (edgeDisableFlags[channel] >> n & 1) continue;
            filterSegment(p + channel + n * segmentLines * along, across, along, pQuant);
        }
    }
    return kelStsNoErr;
}

} // namespace vc1
} // namespace kelvara

using namespace kelvara;
using namespace kelvara::vc1;

KelStatus keliFilterDeblockingLuma_VerEdge_VC1_8u_C1IR(Kel8u *pSrcDst, Kel32s pQuant, Kel32s srcDstStep,
                                                       Kel32s edgeDisableFlag) {
    return deblock<LumaLines, VerEdge>(pSrcDst, pQuant, srcDstStep, {edgeDisableFlag});
}

KelStatus keliFilterDeblockingLuma_HorEdge_VC1_8u_C1IR(Kel8u *pSrcDst, Kel32s pQuant, Kel32s srcDstStep,
                                                       Kel32s edgeDisableFlag) {
    return deblock<LumaLines, HorEdge>(pSrcDst, pQuant, srcDstStep, {edgeDisableFlag});
}

KelStatus keliFilterDeblockingChroma_VerEdge_VC1_8u_C1IR(Kel8u *pSrcDst, Kel32s pQuant, Kel32s srcDstStep,
                                                         Kel32s edgeDisableFlag) {
    return deblock<ChromaLines, VerEdge>(pSrcDst, pQuant, srcDstStep, {edgeDisableFlag});
}

KelStatus keliFilterDeblockingChroma_HorEdge_VC1_8u_C1IR(Kel8u *pSrcDst, Kel32s pQuant, Kel32s srcDstStep,
                                                         Kel32s edgeDisableFlag) {
    return deblock<ChromaLines, HorEdge>(pSrcDst, pQuant, srcDstStep, {edgeDisableFlag});
}

KelStatus keliFilterDeblockingChroma_VerEdge_VC1_8u_C2IR(Kel8u *pSrcDst, Kel32s pQuant, Kel32s srcDstStep,
                                                         Kel32s edgeDisableFlagU, Kel32s edgeDisableFlagV) {
    return deblock<ChromaLines, VerEdge>(pSrcDst, pQuant, srcDstStep, {edgeDisableFlagU, edgeDisableFlagV});
}

KelStatus keliFilterDeblockingChroma_HorEdge_VC1_8u_C2IR(Kel8u *pSrcDst, Kel32s pQuant, Kel32s srcDstStep,
                                                         Kel32s edgeDisableFlagU, Kel32s edgeDisableFlagV) {
    return deblock<ChromaLines, HorEdge>(pSrcDst, pQuant, srcDstStep, {edgeDisableFlagU, edgeDisableFlagV});
}
