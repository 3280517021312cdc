// kmvector.cpp - typed buffers of test data: their blocks, their types and their elements.

#include "kmvector.h"

#include <limits.h>
#include <stdlib.h>
#include <string.h>

#include "rkstream.h"
#include "rktest.h"

#include "kmfill.h"

unsigned int kmVector::m_seed = 0;

// ---- life --------------------------------------------------------------------

kmVector::kmVector() {
    init(0);
}

kmVector::kmVector(kmType type) {
    init(type);
}

kmVector::kmVector(kmFunc const &func, int arg) {
    init(func, arg);
}

kmVector::kmVector(kmFunc const &func, kmArg arg) {
    init(func, arg);
}

kmVector::~kmVector() {
    kmVector::deleteVector();
}

void kmVector::init(kmType type) {
    deleteVector();
    m_type = type;
    m_func = rkString("_") + kmFunc::typeToString(type) + "_";
}

void kmVector::init(kmFunc const &func, int arg) {
    init(func.type(arg));
    m_func += func.channelsName(arg);
}

void kmVector::init(kmFunc const &func, kmArg arg) {
    init(func.type(arg));
    m_func += func.channelsName(arg);
}

bool kmVector::allocateVector(int bytes, int align, void *owner) {
    deleteVector();
    if (bytes < 1) {
        memError(bytes);
        return false;
    }
    if (align < 0) align = rkGetAlignByByte() ? -1 : -item(m_func);
    if (!owner) owner = static_cast<rkObject *>(this);
    m_data = static_cast<unsigned char *>(rkTest::allocate(bytes, align, owner));
    if (!m_data) return false;
    memset(m_data, 0, bytes);
    setView(m_data);
    return true;
}

bool kmVector::createVector(int len, int align) {
    return createVector(len, align, nullptr);
}

bool kmVector::createVector(int len, int align, void *owner) {
    long long bytes = static_cast<long long>(len) * item(m_func);
    if (bytes > INT_MAX || bytes < INT_MIN) {
        deleteVector();
        memError(bytes);
        return false;
    }
    if (!allocateVector(static_cast<int>(bytes), align, owner)) return false;
    m_len = len;
    setConst();
    return true;
}

bool kmVector::createVector(int len, SetMode mode, double a, double b) {
    if (!createVector(len, -1)) return false;
    setVector(mode, a, b);
    return true;
}

bool kmVector::createVectorExt(int len, int, SetMode mode, double a, double b) {
    return createVector(len, mode, a, b);
}

void kmVector::deleteVector() {
    rkTest::deallocate(m_data);
    m_data = nullptr;
    m_len = 0;
    deleteReservedCopy();
    clearViews();
}

void kmVector::memError(long long bytes) {
    g_ostrm << MsgError << "-- Memory error: can't allocate " << bytes << " bytes\n" << EndMessage;
}

// ---- the reserved copy -------------------------------------------------------

bool kmVector::reserveCopy() {
    if (!m_data) return false;
    deleteReservedCopy();
    int bytes = size();
    if (bytes > 0) m_reserved = static_cast<unsigned char *>(calloc(bytes, 1));
    if (!m_reserved) return false;
    memcpy(m_reserved, m_data, bytes);
    return true;
}

bool kmVector::setReservedCopy() {
    if (!m_data || !m_reserved) return false;
    memcpy(m_data, m_reserved, size());
    return true;
}

void kmVector::deleteReservedCopy() {
    free(m_reserved);
    m_reserved = nullptr;
}

void *kmVector::getReservedData() {
    return m_reserved;
}

// ---- what it is --------------------------------------------------------------

int kmVector::objectSize() const {
    return size();
}

rkString kmVector::objectInfo() const {
    rkString text = "Vector ";
    return text << kmFunc::typeToString(m_type) << " len=" << m_len;
}

int kmVector::item(kmFunc const &func) {
    kmType type = func.type(1);
    return (type & kmTypeSize) * (type & kmTypeComplex ? 2 : 1) / 8;
}

int kmVector::size() const {
    return m_len * item(m_func);
}

void *kmVector::getDataConst() const {
    return m_data;
}

void *kmVector::getPointerAt(int i) {
    return m_data ? m_data + static_cast<long long>(i) * item(m_func) : nullptr;
}

void const *kmVector::getPointerAt(int i) const {
    return m_data ? m_data + static_cast<long long>(i) * item(m_func) : nullptr;
}

double kmVector::minValue() const {
    kmType real = m_type & ~kmTypeComplex;
    return kmForType(real, [](auto, int) {}) ? getMinValue(real) : 1.0;
}

double kmVector::maxValue() const {
    return getMaxValue(m_type & ~kmTypeComplex);
}

double kmVector::getMinValue(kmType type) {
    double value = 0.0;
    kmForType(type, [&](auto component, int) { value = kmMinOf<typename decltype(component)::type>(); });
    return value;
}

double kmVector::getMaxValue(kmType type) {
    double value = 1.0;
    kmForType(type, [&](auto component, int) { value = kmMaxOf<typename decltype(component)::type>(); });
    return value;
}

double kmVector::getMinAbsValue(kmType type) {
    if (!(type & kmTypeFloat)) return 1.0;
    return (type & kmTypeSize) == 32 ? 1.1754943508222875e-38 : 2.2250738585072014e-308;
}

// ---- elements ----------------------------------------------------------------

void kmVector::getElement(void const *data, double &re, double &im) const {
    if (!data) return;
    kmForType(m_type, [&](auto component, int parts) {
        using T = typename decltype(component)::type;
        re = static_cast<double>(kmLoad<T>(data, 0));
        if (parts == 2) im = static_cast<double>(kmLoad<T>(data, 1));
    });
}

double kmVector::getElement(void const *data) const {
    double re = 0.0, im = 0.0;
    getElement(data, re, im);
    return re;
}

// A user may have asked a test for more elements than it has room for.
static bool holds(kmVector const &v, int i) {
    return v.m_data && i >= 0 && (i + 1LL) * kmVector::item(v.m_func) <= v.size();
}

double kmVector::getIndex(int i) const {
    return getElement(holds(*this, i) ? getPointerAt(i) : nullptr);
}

void kmVector::getIndex(int i, double &re, double &im) const {
    getElement(holds(*this, i) ? getPointerAt(i) : nullptr, re, im);
}

void kmVector::setIndex(int i, SetMode mode, double a, double b) {
    if (holds(*this, i)) setElement(getPointerAt(i), mode, a, b);
}

// The default of a single element is 0, unlike that of a vector.
void kmVector::setElement(void *element, SetMode mode, double a, double b) {
    switch (mode) {
        case SetDefault:
        case SetZero:
            return setDataConst(element, 1, 0.0, 0.0);
        case SetOne:
            return setDataConst(element, 1, 1.0, 0.0);
        case SetMax:
            return setDataConst(element, 1, maxValue(), 0.0);
        case SetMin:
            return setDataConst(element, 1, minValue(), 0.0);
        case SetValue:
            return setDataConst(element, 1, a, b);
        case SetRandom:
            return setRandomElement(element, a, b);
        case SetSequence:
            return setDataConst(element, 1, a, 0.0);
    }
}

void kmVector::setRandomElement(void *element, double a, double b) {
    setDataConst(element, 1, 0.0, 0.0);
    double low = a == b ? minValue() : a;
    double high = a == b ? maxValue() : b;
    kmForType(m_type, [&](auto component, int) {
        setRandUniform<typename decltype(component)::type>(element, 1, low, high, &m_seed);
    });
}

// ---- views -------------------------------------------------------------------

void kmVector::clearViews() {
    Kel16uc *kept = p16uc;
    setView(nullptr);
    p16uc = kept;
}

namespace {

template <class T>
void setIf(T *&view, bool chosen, void *data) {
    view = chosen ? static_cast<T *>(data) : nullptr;
}

} // namespace

void kmVector::setView(void *data) {
    setIf(p8u, m_type == 8, data);
    setIf(p16u, m_type == 16, data);
    setIf(p32u, m_type == 32, data);
    setIf(p64u, m_type == 64, data);
    setIf(p8s, m_type == 264, data);
    setIf(p16s, m_type == 272, data);
    setIf(p32s, m_type == 288, data);
    setIf(p64s, m_type == 320, data);
    setIf(p8sc, m_type == 1288, data);
    setIf(p16sc, m_type == 1296, data);
    setIf(p16uc, m_type == 1040, data);
    setIf(p32sc, m_type == 1312, data);
    setIf(p64sc, m_type == 1344, data);
    setIf(p32f, m_type == 544, data);
    setIf(p64f, m_type == 576, data);
    setIf(p32fc, m_type == 1568, data);
    setIf(p64fc, m_type == 1600, data);
}
