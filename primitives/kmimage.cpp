// kmimage.cpp - images: their blocks and planes, their rows and their elements.

#include "kmimage.h"

#include <limits.h>

#include "rktest.h"

#include "kmbmp.h"

// ---- life --------------------------------------------------------------------

kmImage::kmImage(kmType type, int channels, bool plane) {
    init(type, channels, plane);
}

void kmImage::init(kmType type, int channels, bool plane) {
    deleteVector();
    m_type = type;
    m_func = rkString("_") + kmFunc::typeToString(type) + "_" + channelString(channels, plane);
}

void kmImage::deleteVector() {
    kmVector::deleteVector();
    for (kmVector &plane : m_planeVector) plane.deleteVector();
    clearPlanes();
    m_width = m_height = m_step = 0;
    Kel16uc **kept = planes16uc;
    setPlaneView(false);
    planes16uc = kept;
}

namespace {

// What no number of 64 bits holds becomes the greatest or the smallest one.
long long product(long long a, long long b) {
    long long result;
    if (!__builtin_mul_overflow(a, b, &result)) return result;
    return (a < 0) == (b < 0) ? LLONG_MAX : LLONG_MIN;
}

} // namespace

// Every size that an image can be asked for is an int. A step shorter than a row gets room for the end of
// the last row.
bool kmImage::createImage(int w, int h, int step, int align, bool alignFirstOnly) {
    deleteVector();
    bool planar = isPlane(m_func);
    int planes = planar ? numChannels(m_func) : 1;
    long long rows = static_cast<long long>(h) * planes, bytes = stepOf(w, step);
    long long room = rowBytes(w) > bytes ? rowBytes(w) - bytes : 0;
    long long items = static_cast<long long>(w) * numChannels(m_func);
    bool fits = product(rows, bytes + room) <= INT_MAX && product(rows, items) <= INT_MAX;
    if (w < 0 || h < 0 || !fits) {
        memError(product(rows, bytes));
        return false;
    }
    int block = h > 0 ? static_cast<int>(h * bytes + room) : 0;
    if (!(planar ? createPlanes(block, align, alignFirstOnly) : allocateVector(block, align, nullptr))) {
        return false;
    }
    m_width = w;
    m_height = h;
    m_step = static_cast<int>(bytes);
    setConst();
    return true;
}

// All planes get the alignment of a test's first block. The length is in bytes but counts elements: the
// surplus of wider types is room behind the plane.
bool kmImage::createPlanes(int planeLen, int align, bool alignFirstOnly) {
    int vectorNum = rkTest::m_vectorNum;
    for (int i = 0; i < numChannels(m_func); ++i) {
        rkTest::m_vectorNum = vectorNum;
        if (alignFirstOnly && i > 0) align = 0;
        void *owner = i == 0 ? static_cast<rkObject *>(this) : MEM_OBJECT_IS_SUBOBJECT;
        m_planeVector[i].init(m_type);
        if (!m_planeVector[i].createVector(planeLen, align, owner)) return false;
        m_planes[i] = m_planeVector[i].m_data;
    }
    setPlanePtrs();
    return true;
}

bool kmImage::createImage(KeliSize size, int step, int align, bool alignFirstOnly) {
    return createImage(size.width, size.height, step, align, alignFirstOnly);
}

bool kmImage::createVector(int w, int h, SetMode mode, double a, double b) {
    if (!createImage(w, h, -1, -1, false)) return false;
    setVector(mode, a, b);
    return true;
}

bool kmImage::createVector(KeliSize size, SetMode mode, double a, double b) {
    return createVector(size.width, size.height, mode, a, b);
}

bool kmImage::createVectorExt(int w, int h, int, SetMode mode, double a, double b) {
    return createVector(w, h, mode, a, b);
}

bool kmImage::createVectorExt(KeliSize size, int, SetMode mode, double a, double b) {
    return createVector(size, mode, a, b);
}

bool kmImage::createImageExt(int w, int h, int, int, SetMode mode, double a, double b) {
    return createVector(w, h, mode, a, b);
}

bool kmImage::createImageExt(KeliSize size, int, int, SetMode mode, double a, double b) {
    return createVector(size, mode, a, b);
}

bool kmImage::loadImage(rkString name, int align) {
    return kmBmpFile(this).load(name, align);
}

// ---- channels and sizes ------------------------------------------------------

rkString kmImage::channelString(int n, bool plane) {
    rkString text = n == 4 ? "A" : "";
    return text << (plane ? "P" : "C") << n;
}

bool kmImage::isPlane(kmFunc const &func) {
    return func.descrName().find("P") >= 0;
}

int kmImage::numChannels(kmFunc const &func) {
    rkString descr = func.descrName();
    for (int n = 4; n > 1; --n) {
        if (descr.find(static_cast<char>('0' + n)) >= 0) return n;
    }
    return 1;
}

int kmImage::numActualChannels(kmFunc const &func) {
    int n = numChannels(func);
    return n == 4 && func.descrName().find("A") >= 0 ? 3 : n;
}

long long kmImage::rowBytes(int w) const {
    return static_cast<long long>(w) * item(m_func) * (isPlane(m_func) ? 1 : numChannels(m_func));
}

long long kmImage::stepOf(int w, int step) const {
    return step < 1 ? (rowBytes(w) + 15) / 16 * 16 : step;
}

int kmImage::planeSize() const {
    return static_cast<int>(m_height * stepOf(m_width, m_step));
}

int kmImage::size() const {
    return static_cast<int>(getNumRows() * stepOf(m_width, m_step));
}

int kmImage::objectSize() const {
    return numItems() * item(m_func);
}

int kmImage::numItems() const {
    return m_width * m_height * numChannels(m_func);
}

int kmImage::numActualItems() const {
    return m_width * m_height * numActualChannels(m_func);
}

rkString kmImage::objectInfo() const {
    rkString text = "Image ";
    return text << m_func.substr(1) << " size=" << m_width << "x" << m_height;
}

// ---- planes ------------------------------------------------------------------

void kmImage::clearPlanes() {
    for (void *&plane : m_planes) plane = nullptr;
}

bool kmImage::setPlaneArray() {
    clearPlanes();
    if (!m_data || !isPlane(m_func)) return false;
    for (int i = 0; i < numChannels(m_func); ++i) {
        m_planes[i] = m_data + static_cast<long long>(i) * planeSize();
    }
    return true;
}

void kmImage::setPlanePtrs() {
    setPlaneView(true);
    setView(m_planes[0]);
}

namespace {

template <class T>
void setIf(T **&view, bool chosen, void **planes) {
    view = chosen ? reinterpret_cast<T **>(planes) : nullptr;
}

} // namespace

void kmImage::setPlaneView(bool chosen) {
    kmType type = chosen ? m_type : 0;
    setIf(planes8u, type == 8, m_planes);
    setIf(planes16u, type == 16, m_planes);
    setIf(planes32u, type == 32, m_planes);
    setIf(planes64u, type == 64, m_planes);
    setIf(planes8s, type == 264, m_planes);
    setIf(planes16s, type == 272, m_planes);
    setIf(planes32s, type == 288, m_planes);
    setIf(planes64s, type == 320, m_planes);
    setIf(planes8sc, type == 1288, m_planes);
    setIf(planes16sc, type == 1296, m_planes);
    setIf(planes16uc, type == 1040, m_planes);
    setIf(planes32sc, type == 1312, m_planes);
    setIf(planes64sc, type == 1344, m_planes);
    setIf(planes32f, type == 544, m_planes);
    setIf(planes64f, type == 576, m_planes);
    setIf(planes32fc, type == 1568, m_planes);
    setIf(planes64fc, type == 1600, m_planes);
}

// ---- rows and elements -------------------------------------------------------

int kmImage::getNumRows() const {
    return m_height * (isPlane(m_func) ? numChannels(m_func) : 1);
}

int kmImage::getRowLen() const {
    return m_width * (isPlane(m_func) ? 1 : numChannels(m_func));
}

void *kmImage::rowAt(int row) const {
    if (m_data) return m_data + static_cast<long long>(row) * m_step;
    if (row < 0 || m_height < 1 || row / m_height > 3) return nullptr;
    unsigned char *plane = static_cast<unsigned char *>(m_planes[row / m_height]);
    return plane ? plane + static_cast<long long>(row % m_height) * m_step : nullptr;
}

void *kmImage::elementAt(int x, int y, int c) const {
    bool planar = isPlane(m_func);
    unsigned char *row = static_cast<unsigned char *>(rowAt(planar ? y + m_height * c : y));
    long long column = planar ? x : static_cast<long long>(x) * numChannels(m_func) + c;
    return row ? row + column * item(m_func) : nullptr;
}

void *kmImage::getRowPointer(int row) {
    return rowAt(row);
}

void const *kmImage::getRowPointer(int row) const {
    return rowAt(row);
}

void *kmImage::getPointerAt(int x, int y, int c) {
    return elementAt(x, y, c);
}

void const *kmImage::getPointerAt(int x, int y, int c) const {
    return elementAt(x, y, c);
}

void kmImage::setImageAt(int x, int y, int c, double re, double im) {
    setDataConst(elementAt(x, y, c), 1, re, im);
}

void kmImage::getImageAt(int x, int y, int c, double &re, double &im) const {
    getElement(elementAt(x, y, c), re, im);
}

double kmImage::getImageAt(int x, int y, int c) const {
    return getElement(elementAt(x, y, c));
}

void kmImage::setIndex(int x, int y, int c, SetMode, double a, double b) {
    setImageAt(x, y, c, a, b);
}

void kmImage::getIndex(int x, int y, int c, double &re, double &im) const {
    getImageAt(x, y, c, re, im);
}

double kmImage::getIndex(int x, int y, int c) const {
    return getImageAt(x, y, c);
}

void kmImage::setIndex(int i, SetMode mode, double a, double b) {
    kmVector::setIndex(i, mode, a, b);
}

double kmImage::getIndex(int i) const {
    return kmVector::getIndex(i);
}

void kmImage::getIndex(int i, double &re, double &im) const {
    kmVector::getIndex(i, re, im);
}

void *kmImage::getDataConst() const {
    return m_data;
}
