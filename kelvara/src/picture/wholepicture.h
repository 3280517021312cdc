// wholepicture.h - what the filters of whole pictures share: checks, a picture with a border, their states.

#ifndef KELVARA_WHOLEPICTURE_H
#define KELVARA_WHOLEPICTURE_H

#include "../common/checks.h"
#include "../common/samples.h"

#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <new>

namespace kelvara {

inline bool isPictureSize(KeliSize size) {
    constexpr int most = 16384;
    return size.width > 0 && size.height > 0 && size.width <= most && size.height <= most;
}

inline bool isSameSize(KeliSize a, KeliSize b) {
    return a.width == b.width && a.height == b.height;
}

inline bool isInside(KeliRect roi, KeliSize size) {
    const bool some = roi.x >= 0 && roi.y >= 0 && roi.width > 0 && roi.height > 0;
    return some && roi.width <= size.width - roi.x && roi.height <= size.height - roi.y;
}

// Arrays of pointers and steps may stand at any byte too.
template <class T>
inline T entry(const T *array, int i) {
    return load<T>(reinterpret_cast<const unsigned char *>(array + i));
}

// A sample's neighbour, or the sample itself in place of one that is too different.
inline int nearOrSelf(int neighbour, int sample, int limit) {
    return std::abs(neighbour - sample) <= limit ? neighbour : sample;
}

// Rows of bytes with room for one more on each side, so that no filter asks whether it is at the border.
class BorderedPicture {
public:
    BorderedPicture(Kel8u *p, KeliSize size) : m_p(p), m_size(size), m_step(size.width + 2) {}

    static std::size_t bytes(KeliSize size) {
        return (static_cast<std::size_t>(size.width) + 2) * (static_cast<std::size_t>(size.height) + 2);
    }

    // Rows -1 and height are the border's.
    Kel8u *row(int y) const { return m_p + (y + 1) * m_step + 1; }

    // The border repeats the outermost samples.
    void close() const {
        for (int y = 0; y < m_size.height; ++y) {
            Kel8u *samples = row(y);
            samples[-1] = samples[0];
            samples[m_size.width] = samples[m_size.width - 1];
        }
        std::memcpy(row(-1) - 1, row(0) - 1, m_step);
        std::memcpy(row(m_size.height) - 1, row(m_size.height - 1) - 1, m_step);
    }

private:
    Kel8u *m_p;
    KeliSize m_size;
    std::ptrdiff_t m_step;
};

// ---- states -----------------------------------------------------------------------

template <class State, class... Args>
inline KelStatus allocState(State **ppState, const Args &...args) {
    try {
        store(ppState, new State(args...));
    } catch (const std::bad_alloc &) {
        return kelStsMemAllocErr;
    }
    return kelStsNoErr;
}

template <class State>
inline KelStatus freeState(State *pState) {
    if (anyNull(pState)) return kelStsNullPtrErr;
    if (pState->id != State::ownId) return kelStsContextErr;
    pState->id = 0;
    delete pState;
    return kelStsNoErr;
}

} // namespace kelvara

#endif
