// mpeg4calcmv.cpp - the motion vector that stands for MPEG-4's global motion of a macroblock.

#include "warpspec.h"

// ---- parameters ---------------------------------------------------------------

static rkIterator<int> numWarpingPoints;

// ---- data ---------------------------------------------------------------------

static KeliWarpSpec_MPEG4 *pSpec; // tracked
static const int pDU[] = {5, 3, 2, 1}, pDV[] = {5, 3, 2, 1};
static const KeliRect rect = {0, 0, 64, 64}; // of the picture and of what it moves over
static const int xOffset = 2, yOffset = 3;
static KeliMotionVector pGMV;

// ---- class --------------------------------------------------------------------

class Timvcmp4_CalcMV : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override { deleteWarpSpec(pSpec); }
};

bool Timvcmp4_CalcMV::canStart() {
    m_parms.push_back(&numWarpingPoints);
    numWarpingPoints.init("numWarpingPoints");
    for (int points = 0; points < 4; ++points) numWarpingPoints.add(points);
    return true;
}

// Accuracy 0: half a sample.
bool Timvcmp4_CalcMV::initData() {
    return createWarpSpec(pSpec, pDU, pDV, numWarpingPoints.value(), 0, rect, rect);
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(Timvcmp4_CalcMV, keliCalcGlobalMV_MPEG4, xOffset, yOffset, &pGMV, pSpec);
// clang-format on
