// turnedpicture.h - a destination that is written in the order of a picture that is turned on its way.

#ifndef KELVARA_TURNEDPICTURE_H
#define KELVARA_TURNEDPICTURE_H

#include "../common/samples.h"

#include <cstddef>

namespace kelvara {

enum Rotation { NotTurned, Turned90Left, Turned90Right, Turned180 };

inline bool isRotation(int code) {
    return code >= NotTurned && code <= Turned180;
}

inline KeliSize turnedSize(KeliSize size, int rotation) {
    const bool aside = rotation == Turned90Left || rotation == Turned90Right;
    return aside ? KeliSize{size.height, size.width} : size;
}

// Rows and columns are those of the picture as it comes, `size` of them.
template <class T>
class TurnedPicture {
public:
    TurnedPicture(T *p, std::ptrdiff_t stepBytes, KeliSize size, int rotation)
        : m_first(reinterpret_cast<unsigned char *>(p)), m_right(sizeof(T)), m_down(stepBytes) {
        const std::ptrdiff_t lastColumn = size.width - 1, lastRow = size.height - 1;
        const std::ptrdiff_t element = sizeof(T);
        if (rotation == Turned90Left) place(lastColumn * stepBytes, -stepBytes, element);
        if (rotation == Turned90Right) place(lastRow * element, stepBytes, -element);
        if (rotation == Turned180) place(lastRow * stepBytes + lastColumn * element, -element, -stepBytes);
    }

    // The samples of a row are value(0), value(1) and so on.
    template <class Value>
    void setRow(int row, int width, Value value) const {
        unsigned char *dst = m_first + row * m_down;
        if (m_right == sizeof(T)) {
            for (int col = 0; col < width; ++col) set(dst + col * sizeof(T), value(col));
        } else {
            for (int col = 0; col < width; ++col) set(dst + col * m_right, value(col));
        }
    }

private:
    void place(std::ptrdiff_t first, std::ptrdiff_t right, std::ptrdiff_t down) {
        m_first += first;
        m_right = right;
        m_down = down;
    }

    static void set(unsigned char *dst, int value) {
        const T sample = static_cast<T>(value);
        std::memcpy(dst, &sample, sizeof sample);
    }

    unsigned char *m_first;
    std::ptrdiff_t m_right, m_down; // bytes to the next column and row
};

} // namespace kelvara

#endif
