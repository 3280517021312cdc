// sumtest.cpp - sums of a vector of samples.

#include "km.h"

#include "sum.h"

// ---- parameters --------------------------------------------------------------

static rkStepIterator<int> len; // samples in a vector
static rkMapIterator<int> mode; // what is summed

// ---- data ---------------------------------------------------------------------

static kmVector g_src;
static int g_sum;

// ---- class --------------------------------------------------------------------

class CSum : public kmTest {
public:
    using kmTest::kmTest;

    bool canStart() override;
    bool initData() override;
    void flushData() override;
    double getDivisor() override { return len.value(); }
    rkString getUnit() override { return "e"; }
};

bool CSum::canStart() {
    g_src.init(m_func, kmSrc);
    len.init("len", 256, 1024, 256, StepPlus);
    mode.init("mode");
    mode[sumPlain] = "plain";
    mode[sumAbsolute] = "absolute";
    mode.add(sumPlain);
    mode.add(sumAbsolute);
    m_parms.push_back(&len);
    m_parms.push_back(&mode);
    return true;
}

bool CSum::initData() {
    return g_src.createVector(len.value(), SetRandom, -1000, 1000);
}

void CSum::flushData() {
    g_src.deleteVector();
}

// ---- registration -------------------------------------------------------------

KM_REG(CSum, sum_16s32s, g_src.p16s, len.value(), &g_sum, mode.value());
