// cachecopy.cpp - copies of data that fit in the cache, and of data that do not: run it with -C.

#include "km.h"

#include "copy.h"

// ---- parameters --------------------------------------------------------------

// Where the walk begins. With -C the framework doubles and halves them until the data fit the state.
static rkIterator<int> len;
static rkIterator<KeliSize> size;

// ---- data ---------------------------------------------------------------------

static kmVector g_src, g_dst;
static kmImage g_srcImage, g_dstImage;
static KeliSize g_roi;

// ---- a vector: the sum of all data counts --------------------------------------

class CCopy : public kmTest {
public:
    using kmTest::kmTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return len.value(); }
    rkString getUnit() override { return "e"; }
};

bool CCopy::canStart() {
    g_src.init(m_func, kmSrc);
    g_dst.init(m_func, kmDst);
    len.init("len", "samples of the vector");
    len.add(1024);
    regCacheParm(len);
    return true;
}

bool CCopy::initData() {
    return g_src.createVector(len.value(), SetRandom, 0, 0) && g_dst.createVector(len.value(), SetZero, 0, 0);
}

void CCopy::flushData() {
    g_src.deleteVector();
    g_dst.deleteVector();
}

// ---- an image: the source alone has to be large enough --------------------------

class CCopyImage : public kmTest {
public:
    using kmTest::kmTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return g_srcImage.numItems(); }
    rkString getUnit() override { return "p"; }
};

bool CCopyImage::canStart() {
    g_srcImage.init(m_func.srcType(), m_func.srcChannels(), m_func.srcPlane());
    g_dstImage.init(m_func.dstType(), m_func.dstChannels(), m_func.dstPlane());
    size.init("size", "size of the image");
    size.add({64, 64});
    regCacheParm(size, g_srcImage, nullptr);
    return true;
}

bool CCopyImage::initData() {
    g_roi = size.value();
    return g_srcImage.createVector(g_roi, SetRandom, 0, 0) && g_dstImage.createVector(g_roi, SetZero, 0, 0);
}

void CCopyImage::flushData() {
    g_srcImage.deleteVector();
    g_dstImage.deleteVector();
}

// ---- registration -------------------------------------------------------------

KM_REG(CCopy, copy_16s, g_src.p16s, g_dst.p16s, len.value());
KM_REG(CCopyImage, copyImage_8u_C1R, g_srcImage.p8u, g_srcImage.m_step, g_dstImage.p8u, g_dstImage.m_step,
       g_roi);
