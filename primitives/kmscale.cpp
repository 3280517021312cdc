// kmscale.cpp - the scale factors of a primitive.

#include "kmscale.h"

#include "rktest.h"

int kmScaleIterator::colmIndex() const {
    return rkTest::m_numParmsColm - 1;
}

bool kmScaleIterator::isScaled(kmFunc func) {
    rkString descr = func.descrName();
    return descr.find("Sfs") >= 0 || descr.find("Fix") >= 0;
}

void kmScaleIterator::init(rkString funcName) {
    m_scaled = isScaled(funcName);
    if (!m_scaled) {
        rkIterator<int>::init("", "");
        add(0);
        return;
    }
    rkIterator<int>::init("ScaleFactor", "ScaleFactor");
    static const int factors[] = {0, 1, 2, -1};
    for (int factor : factors) add(factor);
}

void kmScaleIterator::replace(rkString const &funcName, int const *factors, int count) {
    init(funcName);
    if (!m_scaled) return;
    rkIterator<int>::init("ScaleFactor");
    for (int i = 0; i < count; ++i) add(factors[i]);
}

void kmScaleIterator::init(rkString funcName, int a) {
    replace(funcName, &a, 1);
}

void kmScaleIterator::init(rkString funcName, int a, int b) {
    int factors[] = {a, b};
    replace(funcName, factors, 2);
}

void kmScaleIterator::init(rkString funcName, int a, int b, int c) {
    int factors[] = {a, b, c};
    replace(funcName, factors, 3);
}

void kmScaleIterator::init(rkString funcName, int a, int b, int c, int d) {
    int factors[] = {a, b, c, d};
    replace(funcName, factors, 4);
}

void kmScaleIterator::init(rkString funcName, int a, int b, int c, int d, int e) {
    int factors[] = {a, b, c, d, e};
    replace(funcName, factors, 5);
}

void kmScaleIterator::init(rkString funcName, int a, int b, int c, int d, int e, int f) {
    int factors[] = {a, b, c, d, e, f};
    replace(funcName, factors, 6);
}
