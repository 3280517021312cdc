// deblockingluma.cpp - deblocking filters of H.264 for luma.

#include "deblocking.h"
#include "deblockingtablesh264.h"

// ---- data ---------------------------------------------------------------------

static DeblockingPool pool;

// The edge to be filtered stands between the columns 15 and 16 of 32, or, moved, between 31 and the next row.
static const DeblockingLayout verticalLuma = turnedBlocks(h264::lumaShape, 512064, 512, 32, 12, 16, 16);
// A strip of 20 rows, the blocks side by side.
static const DeblockingLayout horizontalLuma = stripOfBlocks(h264::lumaShape, 320000, 16, 16000, 16);

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
};

bool rk_Deblocking::canStart() {
    m_verticalEdge = m_func.find("VerEdge", 0) >= 0;
    pool.start(*this, m_verticalEdge);
    return true;
}

bool rk_Deblocking::initData() {
    return pool.fill(h264::LumaDeblockingData, m_verticalEdge ? verticalLuma : horizontalLuma);
}

} // namespace

// ---- registration -------------------------------------------------------------

#define ARRAYS pool.alpha(), pool.beta(), pool.thresholds(16), pool.strengths()
#define VER    pool.samples(512, 16 * pool.aligned() + 16), 32, ARRAYS
#define HOR    pool.samples(16, 64000), 16000, ARRAYS

// clang-format off
KM_REG(rk_Deblocking, keliFilterDeblockingLuma_VerEdge_H264_8u_C1IR, VER);
KM_REG(rk_Deblocking, keliFilterDeblockingLuma_HorEdge_H264_8u_C1IR, HOR);
// clang-format on
