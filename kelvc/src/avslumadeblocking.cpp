// avslumadeblocking.cpp - deblocking filters of AVS for luma.

#include "deblocking.h"
#include "deblockingtablesavs.h"

// ---- data ---------------------------------------------------------------------

static DeblockingPool pool;
static KeliDeblockingInfo info; // all calls of a set filter one block

// The edge to be filtered stands between the columns 15 and 16 of 32, or, moved, between 31 and the next row.
static const DeblockingLayout verticalLuma = turnedBlocks(avs::lumaShape, 512064, 512, 32, 12, 16, 16);
// A strip of 20 rows, the blocks side by side.
static const DeblockingLayout horizontalLuma = stripOfBlocks(avs::lumaShape, 320000, 16, 16000, 16);

// ---- class --------------------------------------------------------------------

class rk_AvsLumaDeblocking : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override { pool.flush(); }
    rkString getUnit() override { return "all"; }

private:
    bool m_verticalEdge = false;
};

bool rk_AvsLumaDeblocking::canStart() {
    m_verticalEdge = m_func.find("VerEdge", 0) >= 0;
    pool.start(*this, m_verticalEdge);
    return true;
}

bool rk_AvsLumaDeblocking::initData() {
    if (!pool.fill(avs::LumaDeblockingData, m_verticalEdge ? verticalLuma : horizontalLuma)) return false;
    info =
        m_verticalEdge ? pool.info(512, 16 * pool.aligned() + 16, 32, 16) : pool.info(16, 64000, 16000, 16);
    return true;
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(rk_AvsLumaDeblocking, keliFilterDeblockingLuma_VerEdge_AVS_8u_C1IR, &info);
KM_REG(rk_AvsLumaDeblocking, keliFilterDeblockingLuma_HorEdge_AVS_8u_C1IR, &info);
// clang-format on
