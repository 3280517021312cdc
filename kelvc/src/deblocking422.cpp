// deblocking422.cpp - deblocking filters of H.264 for chroma of 4:2:2.

#include "deblocking.h"
#include "deblockingtablesh264.h"

// ---- data ---------------------------------------------------------------------

static DeblockingPool pool;
static KeliDeblockingInfo info; // all calls of a set filter one block

// The table has chroma of 4:2:0: the lower half of the block keeps the vectors' constant. The thresholds run
// on into the strengths, for the edges that the table does not have. Moved, the lower half of the last block
// ends 8 bytes behind 1024064.
static const DeblockingLayout vertical422 =
    turnedBlocks(h264::chromaShape, 1024064 + 8, 1024, 64, 12, 112, 16);
static const DeblockingLayout horizontal422 = stripOfBlocks(h264::chromaShape, 320000, 16, 16000, 16);

// ---- class --------------------------------------------------------------------

class rk_DeblockingRI : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override { pool.flush(); }
    rkString getUnit() override { return "all"; }

private:
    bool m_verticalEdge = false;
};

bool rk_DeblockingRI::canStart() {
    m_verticalEdge = m_func.find("VerEdge", 0) >= 0;
    pool.start(*this, m_verticalEdge);
    return true;
}

bool rk_DeblockingRI::initData() {
    if (!pool.fill(h264::ChromaDeblockingData, m_verticalEdge ? vertical422 : horizontal422)) return false;
    info =
        m_verticalEdge ? pool.info(1024, 112 * pool.aligned() + 16, 64, 16) : pool.info(16, 64000, 16000, 16);
    return true;
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(rk_DeblockingRI, keliFilterDeblockingChroma422VerEdge_H264_8u_C1IR, &info);
KM_REG(rk_DeblockingRI, keliFilterDeblockingChroma422HorEdge_H264_8u_C1IR, &info);
// clang-format on
