// edgedetect.cpp - the test of a block of 16-bit samples for edges.

#include <limits.h>

#include "kmvc.h"

// ---- parameters ---------------------------------------------------------------

static rkStepIterator<int> numpoint; // how many differences make no edge yet
static rkStepIterator<int> srcStep;  // elements from row to row

// ---- data ---------------------------------------------------------------------

static const KeliSize roisize = {16, 16};
static const int pixelDifference = 9;

static kmVector pSrc;
static Kel16u *pSrc16u;
static Kel8u verdict;

// ---- class --------------------------------------------------------------------

class vcEdgeDetect : public kmTest {
public:
    using kmTest::kmTest;

    bool canStart() override;
    bool canContinue() override;
    void flushData() override { pSrc.deleteVector(); }
    double getDivisor() override { return roisize.width * roisize.height; }
    rkString getUnit() override { return "pxch"; }
    void parmsToCstrm() override { srcStep.toCStream(g_cstrm); }
};

bool vcEdgeDetect::canStart() {
    pSrc.init(m_func, kmSrc);
    m_parms.push_back(&numpoint);
    m_parms.push_back(&srcStep);
    numpoint.init("numpoint", 0, 66, 2, StepPlus);
    srcStep.init("srcStep", 16, 170, 10, StepTimes);
    return true;
}

// A user may ask for any step; an impossible one gets no memory.
static int elementsOfRows(int step) {
    return step > 0 && step <= INT_MAX / roisize.height ? roisize.height * step : 0;
}

// Flat but for its diagonals, so that it is known how many neighbours differ. Beside the columns of the block
// the data stay random. Rows of a step that is too short run into each other, and the vector cuts off the
// last.
static void drawDiagonals(int step) {
    for (int row = 0; row < roisize.height; ++row) {
        for (int col = 0; col < roisize.width; ++col) {
            const bool diagonal = row == col || row == roisize.width - 1 - col;
            pSrc.setIndex(row * step + col, SetValue, diagonal ? 20 : 120, 0);
        }
    }
}

bool vcEdgeDetect::canContinue() {
    if (!kmTest::canContinue()) return false;
    const int step = srcStep.value();
    if (!pSrc.createVectorExt(elementsOfRows(step), 0, SetRandom, 0, 0)) return false;
    pSrc16u = pSrc.p16u;
    drawDiagonals(step);
    return true;
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(vcEdgeDetect, keliEdgesDetect16x16_16u_C1R, pSrc16u, srcStep.value(), pixelDifference, numpoint.value(), &verdict);
// clang-format on
