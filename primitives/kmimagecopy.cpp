// kmimagecopy.cpp - the reserved copy of an image, and its text.

#include <stdlib.h>
#include <string.h>

#include "kmimage.h"
#include "kmtext.h"

// ---- the reserved copy -------------------------------------------------------

// One block also for separate planes: their rows, one plane behind the other.
bool kmImage::reserveCopy() {
    if (kmVector::reserveCopy()) return true;
    if (m_data || !hasPlanes()) return false;
    deleteReservedCopy();
    m_reserved = static_cast<unsigned char *>(calloc(size(), 1));
    if (!m_reserved) return false;
    for (int i = 0; i < numChannels(m_func); ++i) {
        memcpy(m_reserved + static_cast<long long>(i) * planeSize(), m_planes[i], planeSize());
    }
    return true;
}

bool kmImage::setReservedCopy() {
    if (kmVector::setReservedCopy()) return true;
    if (m_data || !m_reserved || !hasPlanes()) return false;
    for (int i = 0; i < numChannels(m_func); ++i) {
        memcpy(m_planes[i], m_reserved + static_cast<long long>(i) * planeSize(), planeSize());
    }
    return true;
}

bool kmImage::hasPlanes() const {
    if (!isPlane(m_func) || m_height < 1) return false;
    for (int i = 0; i < numChannels(m_func); ++i) {
        if (!m_planes[i]) return false;
    }
    return true;
}

// ---- text --------------------------------------------------------------------

rkString kmImage::getString() const {
    kmText text;
    int rows = getNumRows(), len = getRowLen();
    for (int row = 0; row < rows; ++row) {
        if (row > 0) text.add(row % m_height == 0 ? "\n\n" : "\n");
        text.add(getDataString(getRowPointer(row), len).c_str());
    }
    return text.text();
}
