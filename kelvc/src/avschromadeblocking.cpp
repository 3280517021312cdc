// avschromadeblocking.cpp - deblocking filters of AVS for chroma.

#include "deblocking.h"
#include "deblockingtablesavs.h"

// ---- data ---------------------------------------------------------------------

static DeblockingPool pool;
static KeliDeblockingInfo info; // all calls of a set filter one block

// The edge to be filtered stands behind 8 of 64 columns, or, moved, at the start of the next row.
static const DeblockingLayout verticalChroma = turnedBlocks(avs::chromaShape, 512064, 512, 64, 4, 56, 8);
// A strip of 12 rows, the blocks side by side.
static const DeblockingLayout horizontalChroma = stripOfBlocks(avs::chromaShape, 96000, 8, 8000, 8);

// ---- class --------------------------------------------------------------------

class rk_AvsChromaDeblocking : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override { pool.flush(); }
    rkString getUnit() override { return "all"; }

private:
    bool m_verticalEdge = false;
};

bool rk_AvsChromaDeblocking::canStart() {
    m_verticalEdge = m_func.find("VerEdge", 0) >= 0;
    pool.start(*this, m_verticalEdge);
    return true;
}

bool rk_AvsChromaDeblocking::initData() {
    if (!pool.fill(avs::ChromaDeblockingData, m_verticalEdge ? verticalChroma : horizontalChroma))
        return false;
    info = m_verticalEdge ? pool.info(512, 56 * pool.aligned() + 8, 64, 8) : pool.info(8, 32000, 8000, 8);
    return true;
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(rk_AvsChromaDeblocking, keliFilterDeblockingChroma_VerEdge_AVS_8u_C1IR, &info);
KM_REG(rk_AvsChromaDeblocking, keliFilterDeblockingChroma_HorEdge_AVS_8u_C1IR, &info);
// clang-format on
