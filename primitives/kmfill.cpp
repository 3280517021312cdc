// kmfill.cpp - conversion to element types and the random generator.

#include "kmfill.h"

#include <float.h>
#include <limits.h>

double const MAXABS_32F = sqrt(static_cast<double>(FLT_MAX)) / 2.0;
double const MAXABS_64F = sqrt(DBL_MAX) / 2.0;

namespace {

const double twoTo63 = 9223372036854775808.0;

}

long long kmToInt64(double value) {
    return value >= -twoTo63 && value < twoTo63 ? static_cast<long long>(value) : LLONG_MIN;
}

unsigned long long kmToUInt64(double value) {
    if (!(value >= twoTo63)) return static_cast<unsigned long long>(kmToInt64(value));
    return static_cast<unsigned long long>(kmToInt64(value - twoTo63)) | (1ULL << 63);
}

kmRandom::kmRandom(unsigned int seed)
    : m_x0(seed),
      m_x1(m_x0 * 69069u + 1013904243u),
      m_x2(m_x1 * 69069u + 1013904243u),
      m_carry(-1),
      m_lcg(1131199209u) {}

int kmRandom::next() {
    m_lcg = m_lcg * 69069u + 1013904243u;
    unsigned int t = m_carry + m_x1 - m_x2;
    bool borrow = static_cast<int>(t) < 0;
    m_carry = borrow ? -1 : 0;
    if (borrow) t -= 18;
    m_x2 = m_x1;
    m_x1 = m_x0;
    m_x0 = t;
    return static_cast<int>(m_lcg + t);
}
