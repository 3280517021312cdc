// deblockingchroma.cpp - deblocking filters of H.264 for chroma of 4:2:0, planar and interleaved.

#include "deblocking.h"
#include "deblockingtablesh264.h"

// ---- data ---------------------------------------------------------------------

static DeblockingPool pool;

// The edge to be filtered stands behind 8 of 64 columns, or, moved, at the start of the next row.
static const DeblockingLayout verticalC1 = turnedBlocks(h264::chromaShape, 512064, 512, 64, 4, 56, 8);
// A strip of 12 rows, the blocks side by side.
static const DeblockingLayout horizontalC1 = stripOfBlocks(h264::chromaShape, 96000, 8, 8000, 8);

// Filters of interleaved rows take every second block and go on behind the thousandth. Eight sets of a
// statistic of 1000 calls fit; a longer run starts over.
static const int verticalBlocks = 8 * 2 * deblockingBlocks + 1;

// The first ten rows of the record become pairs of columns; a pair is two neighbours of a row.
static constexpr DeblockingLayout turnedPairs() {
    DeblockingLayout layout =
        turnedBlocks(h264::interleavedShape, 512 * verticalBlocks + 64, 512, 64, 4, 56, 8);
    layout.blocks = verticalBlocks;
    layout.rows = 10;
    layout.cols = 8;
    layout.row = 2;
    layout.together = 2;
    return layout;
}

// Half a row of the record, twelve rows. The strip is 500 blocks wide: the later ones lie a row lower, over
// the first ones.
static constexpr DeblockingLayout stripOfPairs() {
    DeblockingLayout layout = stripOfBlocks(h264::interleavedShape, 192000, 16, 8000, 8);
    layout.rows = 12;
    layout.cols = 8;
    return layout;
}

static const DeblockingLayout verticalC2 = turnedPairs();
static const DeblockingLayout horizontalC2 = stripOfPairs();

// The last double steps at which all samples of the filter lie in the pool: 8 rows of 16 bytes.
static const int lastVertical = verticalBlocks - 1;
static const int lastHorizontal = (192000 - 32000 - 7 * 8000 - 16) / 8;

// ---- class --------------------------------------------------------------------

namespace {

class rk_Deblocking : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override { pool.flush(); }
    rkString getUnit() override { return "all"; }

private:
    bool m_verticalEdge = false;
    bool m_interleaved = false;
};

bool rk_Deblocking::canStart() {
    m_verticalEdge = m_func.find("VerEdge", 0) >= 0;
    m_interleaved = m_func.find("C2IR", 0) >= 0;
    pool.start(*this, m_verticalEdge);
    return true;
}

bool rk_Deblocking::initData() {
    if (m_interleaved)
        return pool.fill(h264::ChromaDeblockingDataNV12, m_verticalEdge ? verticalC2 : horizontalC2);
    return pool.fill(h264::ChromaDeblockingData, m_verticalEdge ? verticalC1 : horizontalC1);
}

} // namespace

// ---- registration -------------------------------------------------------------

// The step comes before the use. A run that is longer than the pool starts over at the first block.
static KM_INLINE int doubleStep(int last) {
    pool.src_offset = pool.src_offset <= last - 2 ? pool.src_offset + 2 : 0;
    return pool.src_offset;
}

#define ARRAYS pool.alpha(), pool.beta(), pool.thresholds(8), pool.strengths()
#define VER_C1 pool.samples(512, 56 * pool.aligned() + 8), 64, ARRAYS
#define HOR_C1 pool.samples(8, 32000), 8000, ARRAYS
#define VER_C2 pool.pSrcDst.p8u + 512 * doubleStep(lastVertical) + 56 * pool.aligned() + 8, 64, ARRAYS
#define HOR_C2 pool.pSrcDst.p8u + 8 * doubleStep(lastHorizontal) + 32000, 8000, ARRAYS

// clang-format off
KM_REG(rk_Deblocking, keliFilterDeblockingChroma_VerEdge_H264_8u_C1IR, VER_C1);
KM_REG(rk_Deblocking, keliFilterDeblockingChroma_HorEdge_H264_8u_C1IR, HOR_C1);
KM_REG(rk_Deblocking, keliFilterDeblockingChroma_VerEdge_H264_8u_C2IR, VER_C2);
KM_REG(rk_Deblocking, keliFilterDeblockingChroma_HorEdge_H264_8u_C2IR, HOR_C2);
// clang-format on
