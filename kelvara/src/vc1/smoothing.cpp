// smoothing.cpp - the exported overlap smoothing of VC-1.

#include "../common/checks.h"
#include "../common/samples.h"
#include "kelvc.h"

#include <algorithm>
#include <limits>

namespace kelvara {
namespace vc1 {

// ---- kernel ----------------------------------------------------------------------

namespace {

// The four samples of a line across an edge, which lies in their middle.
struct Line {
    int x[4];
};

// A block of one colour as it was reconstructed.
struct Block {
    const Kel16s *p;
    int step;

    int at(int row, int col) const { return Samples<Kel16s>(p, step)(row, col); }
};

// One that takes the smoothed values.
struct OpenBlock {
    Kel16s *p;
    int step;

    int at(int row, int col) const { return Samples<Kel16s>(p, step)(row, col); }
    void set(int row, int col, int value) const {
        const int low = std::numeric_limits<Kel16s>::min(), high = std::numeric_limits<Kel16s>::max();
        Target<Kel16s>(p, step).set(row, col, std::clamp(value, low, high));
    }
};

// The picture: a sample of one colour every `pixel` bytes, p the first one behind the edge.
struct Picture {
    Kel8u *p;
    int step, pixel;

    void set(int row, int col, int value) const {
        const std::ptrdiff_t offset = static_cast<std::ptrdiff_t>(row) * step + col * pixel;
        store<Kel8u>(p + offset, static_cast<Kel8u>(std::clamp(value, 0, 255)));
    }
};

} // namespace

// SMPTE 421M 8.5. Lines are those of the picture, counted from the block's first one; every second one rounds
// the other way.
static Line smoothed(const Line &in, int line) {
    const int up = 4 - (line & 1), down = 3 + (line & 1);
    const int *x = in.x;
    return {{(7 * x[0] + x[3] + up) >> 3, (-x[0] + 7 * x[1] + x[2] + x[3] + down) >> 3,
             (x[0] + x[1] + 7 * x[2] - x[3] + up) >> 3, (x[0] + 7 * x[3] + down) >> 3}};
}

// The line of the macroblock that is line `row` of the picture, whose fields alternate.
static int lineOf(int row, bool sortedByField) {
    return sortedByField ? row / 2 + 8 * (row % 2) : row;
}

// A line of a vertical edge: rowL of the block before it, from column colL on, rowR of the one behind it,
// from colR on, and its place in the picture.
static void smoothRow(OpenBlock left, int rowL, int colL, OpenBlock right, int rowR, int colR, Picture dst,
                      int row, int col) {
    const Line in = {
        {left.at(rowL, colL), left.at(rowL, colL + 1), right.at(rowR, colR), right.at(rowR, colR + 1)}};
    const Line out = smoothed(in, row);
    left.set(rowL, colL, out.x[0]);
    left.set(rowL, colL + 1, out.x[1]);
    right.set(rowR, colR, out.x[2]);
    right.set(rowR, colR + 1, out.x[3]);
    for (int i = 0; i < 4; ++i) dst.set(row, col - 2 + i, out.x[i]);
}

// A line of a horizontal edge: column col of the two rows from rowU on before it, from rowB on behind it.
static void smoothColumn(Block upper, int rowU, Block bottom, int rowB, int col, Picture dst, int row) {
    const Line in = {
        {upper.at(rowU, col), upper.at(rowU + 1, col), bottom.at(rowB, col), bottom.at(rowB + 1, col)}};
    const Line out = smoothed(in, col);
    for (int i = 0; i < 4; ++i) dst.set(row - 2 + i, col, out.x[i]);
}

// ---- edges -----------------------------------------------------------------------

enum { LeftSorted = 1, RightSorted = 2 }; // bits of fieldNeighbourFlag

// The bits of edgeDisableFlag for a line of a macroblock.
static bool isDisabled(int edgeDisableFlag, bool inTheMiddle, int line) {
    return edgeDisableFlag >> (2 * inTheMiddle + (line >= 8)) & 1;
}

static void smoothLumaVertical(OpenBlock left, OpenBlock right, Picture dst, int fieldNeighbourFlag,
                               int edgeDisableFlag) {
    for (int row = 0; row < 16; ++row) {
        const int rowL = lineOf(row, fieldNeighbourFlag & LeftSorted);
        const int rowR = lineOf(row, fieldNeighbourFlag & RightSorted);
        if (!isDisabled(edgeDisableFlag, false, rowR)) smoothRow(left, rowL, 0, right, rowR, 0, dst, row, 0);
        if (!isDisabled(edgeDisableFlag, true, rowR)) smoothRow(right, rowR, 6, right, rowR, 8, dst, row, 8);
    }
}

static void smoothLumaHorizontal(Block upper, Block bottom, Picture dst, int edgeDisableFlag) {
    for (int col = 0; col < 16; ++col) {
        if (!isDisabled(edgeDisableFlag, false, col)) smoothColumn(upper, 0, bottom, 0, col, dst, 0);
        if (!isDisabled(edgeDisableFlag, true, col)) smoothColumn(bottom, 6, bottom, 8, col, dst, 8);
    }
}

static void smoothChromaEdge(OpenBlock left, OpenBlock right, Picture dst) {
    for (int row = 0; row < 8; ++row) smoothRow(left, row, 0, right, row, 0, dst, row, 0);
}

static void smoothChromaEdge(Block upper, Block bottom, Picture dst) {
    for (int col = 0; col < 8; ++col) smoothColumn(upper, 0, bottom, 0, col, dst, 0);
}

// ---- argument checks -------------------------------------------------------------

template <int W, class B>
static bool tooNarrowBlocks(const B &before, const B &behind) {
    return tooNarrow<Kel16s>(before.step, W) || tooNarrow<Kel16s>(behind.step, W);
}

// block before the edge, block behind it, picture
template <int W, class B>
static KelStatus checkEdge(const B &before, const B &behind, const Kel8u *pDst, int dstStep) {
    if (anyNull(before.p, behind.p, pDst)) return kelStsNullPtrErr;
    return tooNarrowBlocks<W>(before, behind) || dstStep < W ? kelStsStepErr : kelStsNoErr;
}

static bool isEdgeDisableFlag(int flag) {
    return flag >= 0 && flag <= 15;
}

static bool isFieldNeighbourFlag(int flag) {
    return flag >= 0 && flag <= 3;
}

// one colour
template <class B>
static KelStatus smoothChroma(const B &before, const B &behind, Kel8u *pDst, int dstStep) {
    const KelStatus status = checkEdge<8>(before, behind, pDst, dstStep);
    if (status != kelStsNoErr) return status;
    smoothChromaEdge(before, behind, {pDst, dstStep, 1});
    return kelStsNoErr;
}

// two colours, interleaved in the picture
template <class B>
static KelStatus smoothChroma(const B &beforeU, const B &behindU, const B &beforeV, const B &behindV,
                              Kel8u *pDst, int dstStep) {
    if (anyNull(beforeU.p, behindU.p, beforeV.p, behindV.p, pDst)) return kelStsNullPtrErr;
    if (tooNarrowBlocks<8>(beforeU, behindU) || tooNarrowBlocks<8>(beforeV, behindV) || dstStep < 16)
        return kelStsStepErr;
    smoothChromaEdge(beforeU, behindU, {pDst, dstStep, 2});
    smoothChromaEdge(beforeV, behindV, {pDst + 1, dstStep, 2});
    return kelStsNoErr;
}

} // namespace vc1
} // namespace kelvara

using namespace kelvara::vc1;

// ---- luma ------------------------------------------------------------------------

KelStatus keliSmoothingLuma_VerEdge_VC1_16s8u_C1R(Kel16s *pSrcLeft, int srcLeftStep, Kel16s *pSrcRight,
                                                  int srcRightStep, Kel8u *pDst, int dstStep,
                                                  int fieldNeighbourFlag, int edgeDisableFlag) {
    const OpenBlock left{pSrcLeft, srcLeftStep}, right{pSrcRight, srcRightStep};
    const KelStatus status = checkEdge<16>(left, right, pDst, dstStep);
    if (status != kelStsNoErr) return status;
    if (!isFieldNeighbourFlag(fieldNeighbourFlag) || !isEdgeDisableFlag(edgeDisableFlag))
        return kelStsRangeErr;
    smoothLumaVertical(left, right, {pDst, dstStep, 1}, fieldNeighbourFlag, edgeDisableFlag);
    return kelStsNoErr;
}

KelStatus keliSmoothingLuma_HorEdge_VC1_16s8u_C1R(const Kel16s *pSrcUpper, int srcUpperStep,
                                                  const Kel16s *pSrcBottom, int srcBottomStep, Kel8u *pDst,
                                                  int dstStep, int edgeDisableFlag) {
    const Block upper{pSrcUpper, srcUpperStep}, bottom{pSrcBottom, srcBottomStep};
    const KelStatus status = checkEdge<16>(upper, bottom, pDst, dstStep);
    if (status != kelStsNoErr) return status;
    if (!isEdgeDisableFlag(edgeDisableFlag)) return kelStsRangeErr;
    smoothLumaHorizontal(upper, bottom, {pDst, dstStep, 1}, edgeDisableFlag);
    return kelStsNoErr;
}

// ---- chroma ----------------------------------------------------------------------

KelStatus keliSmoothingChroma_VerEdge_VC1_16s8u_C1R(Kel16s *pSrcLeft, int srcLeftStep, Kel16s *pSrcRight,
                                                    int srcRightStep, Kel8u *pDst, int dstStep) {
    return smoothChroma(OpenBlock{pSrcLeft, srcLeftStep}, OpenBlock{pSrcRight, srcRightStep}, pDst, dstStep);
}

KelStatus keliSmoothingChroma_HorEdge_VC1_16s8u_C1R(const Kel16s *pSrcUpper, int srcUpperStep,
                                                    const Kel16s *pSrcBottom, int srcBottomStep, Kel8u *pDst,
                                                    int dstStep) {
    return smoothChroma(Block{pSrcUpper, srcUpperStep}, Block{pSrcBottom, srcBottomStep}, pDst, dstStep);
}

KelStatus keliSmoothingChroma_VerEdge_VC1_16s8u_P2C2R(Kel16s *pSrcLeftU, int srcLeftUStep, Kel16s *pSrcRightU,
                                                      int srcRightUStep, Kel16s *pSrcLeftV, int srcLeftVStep,
                                                      Kel16s *pSrcRightV, int srcRightVStep, Kel8u *pDst,
                                                      int dstStep) {
    return smoothChroma(OpenBlock{pSrcLeftU, srcLeftUStep}, OpenBlock{pSrcRightU, srcRightUStep},
                        OpenBlock{pSrcLeftV, srcLeftVStep}, OpenBlock{pSrcRightV, srcRightVStep}, pDst,
                        dstStep);
}

KelStatus keliSmoothingChroma_HorEdge_VC1_16s8u_P2C2R(const Kel16s *pSrcUpperU, int srcUpperUStep,
                                                      const Kel16s *pSrcBottomU, int srcBottomUStep,
                                                      const Kel16s *pSrcUpperV, int srcUpperVStep,
                                                      const Kel16s *pSrcBottomV, int srcBottomVStep,
                                                      Kel8u *pDst, int dstStep) {
    return smoothChroma(Block{pSrcUpperU, srcUpperUStep}, Block{pSrcBottomU, srcBottomUStep},
                        Block{pSrcUpperV, srcUpperVStep}, Block{pSrcBottomV, srcBottomVStep}, pDst, dstStep);
}
