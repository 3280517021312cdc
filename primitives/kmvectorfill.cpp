// kmvectorfill.cpp - the ways to fill a vector, and the data level under them.

#include "kmfill.h"
#include "kmvector.h"

// ---- the whole vector --------------------------------------------------------

void kmVector::setConst() {
    double value = m_type & kmTypeFloat ? 1.00001 : 2.0;
    setConst(value, value);
}

void kmVector::setConst(double re, double im) {
    setDataConst(m_data, m_len, re, im);
}

void kmVector::setMinValue() {
    setConst(minValue(), minValue());
}

void kmVector::setMaxValue() {
    setConst(maxValue(), maxValue());
}

void kmVector::setJaehne() {
    setJaehne(m_type & kmTypeFloat ? 1.0 : (maxValue() - minValue()) / 2.0);
}

void kmVector::setJaehne(double magn) {
    setVectorJaehne(m_data, m_len, magn);
}

void kmVector::setSequence(double a, double b) {
    if (m_len == 1) {
        setConst(a, 0.0);
    } else {
        setSequence(a, b, (b - a) / (m_len - 1), true);
    }
}

void kmVector::setSequence(double low, double high, double step, bool wrap) {
    setDataSequence(m_data, m_len, low, high, step, wrap ? 1.0 : 0.0);
}

void kmVector::setRandom() {
    if (m_type & kmTypeFloat) {
        setRandom(-1.0, 1.0);
    } else {
        setRandom(minValue(), maxValue());
    }
}

void kmVector::setRandom(double low, double high) {
    setDataRandom(m_data, m_len, low, high);
}

void kmVector::setRandom(double low, double high, unsigned int seed) {
    m_seed = seed;
    setRandom(low, high);
}

namespace {

// Divides by the count, where a sequence without a mode divides by one less.
double stepOfMode(kmType type, int len, double a, double b) {
    double step = (b - a) / (len > 0 ? len : 256);
    return !(type & kmTypeFloat) && step < 1.0 ? 1.0 : step;
}

} // namespace

void kmVector::setVector(SetMode mode, double a, double b) {
    switch (mode) {
        case SetDefault:
            return setConst();
        case SetZero:
            return setConst(0.0, 0.0);
        case SetOne:
            return setConst(1.0, 0.0);
        case SetMax:
            return setMaxValue();
        case SetMin:
            return setMinValue();
        case SetValue:
            return setConst(a, b);
        case SetRandom:
            return a == b ? setRandom() : setRandom(a, b);
        case SetSequence:
            return setSequence(a, b, stepOfMode(m_type, m_len, a, b), true);
    }
}

// ---- the data level ----------------------------------------------------------

void kmVector::setDataConst(void *data, int n, double re, double im) const {
    if (!data) return;
    kmForType(m_type, [&](auto component, int parts) {
        kmSetConst<typename decltype(component)::type>(data, n, parts, re, im);
    });
}

void kmVector::setDataRandom(void *data, int n, double low, double high) const {
    if (!data) return;
    kmForType(m_type, [&](auto component, int parts) {
        long long count = static_cast<long long>(n) * parts;
        setRandUniform<typename decltype(component)::type>(data, count, low, high, &m_seed);
    });
}

void kmVector::setDataSequence(void *data, int n, double low, double high, double step, double wrap) const {
    if (!data) return;
    kmForType(m_type, [&](auto component, int parts) {
        using T = typename decltype(component)::type;
        kmSetSequence<T>(data, n, parts, low, high, step, wrap != 0.0);
    });
}

void kmVector::setVectorJaehne(void *data, int n, double magn) const {
    double offset = 0.0;
    if (!data || !updateJaehneMagn(magn, offset)) return;
    kmForType(m_type, [&](auto component, int parts) {
        kmSetJaehne<typename decltype(component)::type>(data, n, parts, magn, offset);
    });
}

bool kmVector::updateJaehneMagn(double &magn, double &offset) const {
    if (magn < 0.0) return false;
    double low = minValue(), high = maxValue();
    double half = (high - low) / 2.0;
    if (magn > half) magn = half;
    offset = m_type & (kmTypeSigned | kmTypeFloat) ? 0.0 : (low + high) / 2.0;
    return true;
}
