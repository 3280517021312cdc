// mpeg4sad.cpp - what an MPEG-4 coder compares blocks by: sums of absolute differences and deviations.

#include "kmvc.h"

// ---- parameters ---------------------------------------------------------------

static rkMapIterator<int> mcType; // half-sample position of the reference

// ---- data ---------------------------------------------------------------------

static const int pictureWidth = 320;

static kmImage pSrc, pRef;
static int srcStep, refStep;
static KeliSize blockSize; // from the function's name
static Kel32s result;

// ---- class --------------------------------------------------------------------

class Timvcmp4_SAD : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return blockSize.width * blockSize.height; }
    rkString getUnit() override { return "e"; }

private:
    bool hasReference() { return m_func.find("SAD") >= 0; }
};

static void addPosition(char const *name, int code) {
    mcType[code] = name;
    mcType.add(code);
}

bool Timvcmp4_SAD::canStart() {
    if (!getBlockSize(blockSize, 1)) return false;
    if (!hasReference()) return true;
    m_parms.push_back(&mcType);
    mcType.init("mcType");
    addPosition("ff", 0);
    addPosition("fh", 4);
    addPosition("hf", 8);
    addPosition("hh", 12);
    return true;
}

// Half a sample further down the reference has one row more than the block.
bool Timvcmp4_SAD::initData() {
    pSrc.init(m_func.srcType(), 1, false);
    pRef.init(m_func.srcType(), 1, false);
    if (!pSrc.createVector(pictureWidth, blockSize.height, SetDefault, 0, 0)) return false;
    if (!pRef.createVector(pictureWidth, blockSize.height + (hasReference() ? 1 : 0), SetDefault, 0, 0))
        return false;
    srcStep = pSrc.m_step;
    refStep = pRef.m_step;
    return true;
}

void Timvcmp4_SAD::flushData() {
    pSrc.deleteVector();
    pRef.deleteVector();
}

// ---- registration -------------------------------------------------------------

// clang-format off
KM_REG(Timvcmp4_SAD, keliSAD8x8_8u32s_C1R,          pSrc.p8u, srcStep, pRef.p8u, refStep, &result, mcType.value());
KM_REG(Timvcmp4_SAD, keliMeanAbsDev16x16_8u32s_C1R, pSrc.p8u, srcStep, &result);
KM_REG(Timvcmp4_SAD, keliMeanAbsDev8x8_8u32s_C1R,   pSrc.p8u, srcStep, &result);
// clang-format on
