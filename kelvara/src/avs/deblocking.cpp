// deblocking.cpp - the loop filter of AVS (GB/T 20090.2).

#include "kelvc.h"
#include "../common/edges.h"

using namespace kelvara;

namespace {

// ---- kernels ---------------------------------------------------------------------

bool smoothP(Line line, int beta) {
    return std::abs(line.p(2) - line.p(0)) < beta;
}

// Strength 1: the first sample of either side moves by at most the clipping value.
void moveTogether(Line line, int tc) {
    const int p0 = line.p(0), q0 = line.q(0);
    const int delta = clip3(-tc, tc, ((q0 - p0) * 3 + line.p(1) - line.q(1) + 4) >> 3);
    line.setP(0, p0 + delta);
    line.setQ(0, q0 - delta);
}

struct Side {
    int p0, p1;
};

// Strength 2, for the side in front of the edge.
Side strongSide(Line line, const Segment &segment) {
    const int p0 = line.p(0), p1 = line.p(1), q0 = line.q(0);
    const bool smallStep = std::abs(p0 - q0) < (segment.alpha >> 2) + 2;
    const int mean = (2 * p1 + p0 + q0 + 2) >> 2;
    if (smoothP(line, segment.beta) && smallStep) return {(p1 + 2 * p0 + q0 + 2) >> 2, mean};
    return {mean, p1};
}

struct LumaFilter {
    static constexpr int most = 2;

    static void run(Line line, const Segment &segment) {
        segment.strength < 2 ? normal(line, segment) : strong(line, segment);
    }

    // The second samples follow the first ones as these are now; which of them move is judged by the old
    // ones.
    static void normal(Line line, const Segment &segment) {
        const int tc = segment.threshold;
        const bool smoothBefore = smoothP(line, segment.beta);
        const bool smoothBehind = smoothP(line.turned(), segment.beta);
        moveTogether(line, tc);
        const int p0 = line.p(0), p1 = line.p(1), q0 = line.q(0), q1 = line.q(1);
        if (smoothBefore) line.setP(1, p1 + clip3(-tc, tc, ((p0 - p1) * 3 + line.p(2) - q0 + 4) >> 3));
        if (smoothBehind) line.setQ(1, q1 - clip3(-tc, tc, ((q1 - q0) * 3 + p0 - line.q(2) + 4) >> 3));
    }

    static void strong(Line line, const Segment &segment) {
        const Side before = strongSide(line, segment), behind = strongSide(line.turned(), segment);
        line.setP(0, before.p0);
        line.setP(1, before.p1);
        line.setQ(0, behind.p0);
        line.setQ(1, behind.p1);
    }
};

struct ChromaFilter {
    static constexpr int most = 2;

    static void run(Line line, const Segment &segment) {
        if (segment.strength < 2) return moveTogether(line, segment.threshold);
        const int p0 = strongSide(line, segment).p0, q0 = strongSide(line.turned(), segment).p0;
        line.setP(0, p0);
        line.setQ(0, q0);
    }
};

// ---- shapes ---------------------------------------------------------------------

struct LumaEdges {
    static constexpr EdgeShape value = {2, 8, 2, 8, 2, 1, false, 1};
};
struct ChromaEdge {
    static constexpr EdgeShape value = {1, 8, 2, 4, 2, 1, false, 1};
};

template <class Filter, class Shape, Direction direction>
KelStatus deblockBy(const KeliDeblockingInfo *info, int minStep) {
    if (anyNull(info)) return kelStsNullPtrErr;
    return deblock<Filter, Shape, direction>(info->pSrcDst, info->srcDstStep, minStep, info->pAlpha,
                                             info->pBeta, info->pThresholds, info->pStrengths);
}

} // namespace

// ---- exports ----------------------------------------------------------------------

KelStatus keliFilterDeblockingLuma_VerEdge_AVS_8u_C1IR(const KeliDeblockingInfo *pInfo) {
    return deblockBy<LumaFilter, LumaEdges, VerEdge>(pInfo, 16);
}

KelStatus keliFilterDeblockingLuma_HorEdge_AVS_8u_C1IR(const KeliDeblockingInfo *pInfo) {
    return deblockBy<LumaFilter, LumaEdges, HorEdge>(pInfo, 16);
}

KelStatus keliFilterDeblockingChroma_VerEdge_AVS_8u_C1IR(const KeliDeblockingInfo *pInfo) {
    return deblockBy<ChromaFilter, ChromaEdge, VerEdge>(pInfo, 8);
}

KelStatus keliFilterDeblockingChroma_HorEdge_AVS_8u_C1IR(const KeliDeblockingInfo *pInfo) {
    return deblockBy<ChromaFilter, ChromaEdge, HorEdge>(pInfo, 8);
}
