// h263sample.cpp - up- and downsampling of pictures and of prediction errors of H.263.

#include <limits.h>

#include "kmvc.h"

// ---- parameters ---------------------------------------------------------------

static rkIterator<KeliSize> srcSize;
static rkIterator<int> rounding;
static rkMapIterator<int> interpolation; // 1 horizontal, 2 vertical, 3 both

// ---- data ---------------------------------------------------------------------

static kmImage pSrc, pDst;
static int srcStep, dstStep;
static const int fillColor = 64;

// ---- class --------------------------------------------------------------------

class Timvch263_Sample : public kmvcTest {
public:
    using kmvcTest::kmvcTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override;
    rkString getUnit() override { return "e"; }

private:
    void initParameters();
    KeliSize sourceSize() const;
    KeliSize destinationSize() const;

    bool m_block = false;   // of a fixed size
    bool m_down = false;    // else up
    bool m_spatial = false; // has directions
};

static void addInterpolation(int direction, char const *name) {
    interpolation[direction] = name;
    interpolation.add(direction);
}

void Timvch263_Sample::initParameters() {
    srcSize.init("srcSize");
    srcSize.add({8, 8});
    if (!m_block) {
        srcSize.add({16, 16});
        srcSize.add({64, 64});
        srcSize.add({128, 128});
    }
    rounding.init("rounding");
    rounding.add(0);
    interpolation.init("Interpolation");
    addInterpolation(1, "horizontal");
    addInterpolation(2, "vertical");
    addInterpolation(3, "2D");
}

bool Timvch263_Sample::canStart() {
    m_block = m_func.find("8x8") >= 0;
    m_down = m_func.find("Downsample") >= 0;
    m_spatial = m_func.find("Spatial") >= 0;
    m_parms.push_back(&srcSize);
    if (m_spatial) {
        m_parms.push_back(&interpolation);
    } else {
        m_parms.push_back(&rounding);
    }
    initParameters();
    return true;
}

// The call reads a block of its own size, whatever a user asks for.
KeliSize Timvch263_Sample::sourceSize() const {
    return m_block ? KeliSize{8, 8} : srcSize.value();
}

// A user may ask for any size; an impossible one gets no memory.
static int doubled(int n) {
    return n <= INT_MAX / 2 ? 2 * n : INT_MAX;
}

KeliSize Timvch263_Sample::destinationSize() const {
    const KeliSize src = sourceSize();
    if (m_down) return {src.width / 2, src.height / 2};
    const bool wide = !m_spatial || interpolation.value() != 2;
    const bool high = !m_spatial || interpolation.value() != 1;
    return {wide ? doubled(src.width) : src.width, high ? doubled(src.height) : src.height};
}

double Timvch263_Sample::getDivisor() {
    return static_cast<double>(sourceSize().width) * sourceSize().height;
}

// The range is that of prediction errors; samples take the part above 0.
bool Timvch263_Sample::initData() {
    const int shift = rkGetVectorShift();
    pSrc.init(m_func.srcType(), 1, false);
    pDst.init(m_func.dstType(), 1, false);
    if (!pSrc.createVectorExt(sourceSize(), shift, SetRandom, -255.0, 255.0)) return false;
    if (!pDst.createVectorExt(destinationSize(), 2 * shift, SetDefault, 0, 0)) return false;
    srcStep = pSrc.m_step;
    dstStep = pDst.m_step;
    return true;
}

void Timvch263_Sample::flushData() {
    pSrc.deleteVector();
    pDst.deleteVector();
}

// ---- registration -------------------------------------------------------------

#define SRC pSrc.p8u, srcStep, srcSize.value()
#define DST pDst.p8u, dstStep

// clang-format off
KM_REG(Timvch263_Sample, keliUpsampleFour_H263_8u_C1R,         SRC, DST, rounding.value(), fillColor);
KM_REG(Timvch263_Sample, keliDownsampleFour_H263_8u_C1R,       SRC, DST, rounding.value());
KM_REG(Timvch263_Sample, keliSpatialInterpolation_H263_8u_C1R, SRC, DST, interpolation.value());
KM_REG(Timvch263_Sample, keliUpsampleFour8x8_H263_16s_C1R,     pSrc.p16s, srcStep, pDst.p16s, dstStep);
// clang-format on
