// edgefilter.cpp - the exported filters of block edges of H.263.

#include "../common/edges.h"
#include "kelvc.h"

#include <algorithm>

using namespace kelvara;

namespace {

// ---- kernels ----------------------------------------------------------------------

// ITU-T H.263 Table J.2, STRENGTH by QUANT
constexpr Kel8u strengths[32] = {0, 1, 1, 2, 2, 3, 3, 4,  4,  4,  5,  5,  6,  6,  7,  7,
                                 7, 8, 8, 8, 9, 9, 9, 10, 10, 10, 11, 11, 11, 12, 12, 12};

// Both samples in front of an edge and both behind it, for all of its lines.
template <int length>
struct EdgeSamples {
    int a[length], b[length], c[length], d[length];
};

// A ramp up to the strength, and down again above it, as a greater step is one of the picture (J.3).
inline int upDownRamp(int x, int strength) {
    const int size = std::abs(x);
    const int ramp = std::max(0, size - std::max(0, 2 * (size - strength)));
    return x < 0 ? -ramp : ramp;
}

// ITU-T H.263 J.3; all quotients are cut off towards zero.
struct DeblockingFilter {
    static constexpr int reach = 2; // samples of a side that are written

    template <int length>
    static void run(EdgeSamples<length> &edge, int QP) {
        const int strength = strengths[QP];
        for (int i = 0; i < length; ++i) {
            const int a = edge.a[i], b = edge.b[i], c = edge.c[i], d = edge.d[i];
            const int d1 = upDownRamp((a - 4 * b + 4 * c - d) / 8, strength);
            const int limit = std::abs(d1 / 2);
            const int d2 = clip3(-limit, limit, (a - d) / 4);
            edge.a[i] = a - d2;
            edge.b[i] = clip3(0, 255, b + d1);
            edge.c[i] = clip3(0, 255, c - d1);
            edge.d[i] = d + d2;
        }
    }
};

// ITU-T H.263 Q.7, without the deblocking filter mode
struct BoundaryFilter {
    static constexpr int reach = 1;

    template <int length>
    static void run(EdgeSamples<length> &edge, int) {
        for (int i = 0; i < length; ++i) {
            const int b = edge.b[i], c = edge.c[i];
            edge.b[i] = (3 * b + c + 2) >> 2;
            edge.c[i] = (b + 3 * c + 2) >> 2;
        }
    }
};

// The lines lie `along` bytes apart, the samples of a line `across` bytes.
template <class Filter, int length>
void filterEdge(Kel8u *first, std::ptrdiff_t across, std::ptrdiff_t along, int QP) {
    EdgeSamples<length> edge = {};
    for (int i = 0; i < length; ++i) {
        const Line line(first + i * along, across);
        if constexpr (Filter::reach > 1) {
            edge.a[i] = line.p(1);
            edge.d[i] = line.q(1);
        }
        edge.b[i] = line.p(0);
        edge.c[i] = line.q(0);
    }
    Filter::run(edge, QP);
    for (int i = 0; i < length; ++i) {
        const Line line(first + i * along, across);
        if constexpr (Filter::reach > 1) {
            line.setP(1, edge.a[i]);
            line.setQ(1, edge.d[i]);
        }
        line.setP(0, edge.b[i]);
        line.setQ(0, edge.c[i]);
    }
}

// ---- argument check ---------------------------------------------------------------

// pointer, step, quantiser; `edges` edges of a block of `length`, 8 samples apart
template <class Filter, Direction direction, int length, int edges>
KelStatus filterBlock(Kel8u *pSrcDst, int srcDstStep, int QP) {
    if (anyNull(pSrcDst)) return kelStsNullPtrErr;
    if (tooNarrow<Kel8u>(srcDstStep, length)) return kelStsStepErr;
    if (QP < 1 || QP > 31) return kelStsRangeErr;
    const std::ptrdiff_t across = direction == VerEdge ? 1 : srcDstStep;
    const std::ptrdiff_t along = direction == VerEdge ? srcDstStep : 1;
    for (int edge = 0; edge < edges; ++edge)
        filterEdge<Filter, length>(pSrcDst + 8 * edge * across, across, along, QP);
    return kelStsNoErr;
}

} // namespace

KelStatus keliFilterDeblocking8x8HorEdge_H263_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, int QP) {
    return filterBlock<DeblockingFilter, HorEdge, 8, 1>(pSrcDst, srcDstStep, QP);
}

KelStatus keliFilterDeblocking8x8VerEdge_H263_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, int QP) {
    return filterBlock<DeblockingFilter, VerEdge, 8, 1>(pSrcDst, srcDstStep, QP);
}

KelStatus keliFilterDeblocking16x16HorEdge_H263_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, int QP) {
    return filterBlock<DeblockingFilter, HorEdge, 16, 2>(pSrcDst, srcDstStep, QP);
}

KelStatus keliFilterDeblocking16x16VerEdge_H263_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, int QP) {
    return filterBlock<DeblockingFilter, VerEdge, 16, 2>(pSrcDst, srcDstStep, QP);
}

KelStatus keliFilterBlockBoundaryHorEdge_H263_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, int QP) {
    return filterBlock<BoundaryFilter, HorEdge, 16, 1>(pSrcDst, srcDstStep, QP);
}

KelStatus keliFilterBlockBoundaryVerEdge_H263_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, int QP) {
    return filterBlock<BoundaryFilter, VerEdge, 16, 1>(pSrcDst, srcDstStep, QP);
}
