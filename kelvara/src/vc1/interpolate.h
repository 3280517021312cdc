// interpolate.h - samples between samples of VC-1: kernels.

#ifndef KELVARA_VC1_INTERPOLATE_H
#define KELVARA_VC1_INTERPOLATE_H

#include "../common/samples.h"

#include <algorithm>

namespace kelvara {
namespace vc1 {

const int maxBlock = 16; // samples across and down

inline bool isBlock(KeliSize size) {
    return size.width >= 1 && size.width <= maxBlock && size.height >= 1 && size.height <= maxBlock;
}

// Where a block is between the samples, in quarters, and how it is rounded.
struct Position {
    int dx, dy, roundControl;
};

inline bool isPosition(const Position &at) {
    return at.dx >= 0 && at.dx <= 3 && at.dy >= 0 && at.dy <= 3 &&
           (at.roundControl == 0 || at.roundControl == 1);
}

// Bilinear, SMPTE 421M 8.3.6.5. What would have the weight 0 is not read.
struct Bilinear {
    template <class Src, class Dst>
    static void run(Src src, Dst dst, KeliSize size, const Position &at) {
        const int dx = at.dx, dy = at.dy, right = dx != 0, down = dy != 0, rounding = 8 - at.roundControl;
        for (int row = 0; row < size.height; ++row) {
            for (int col = 0; col < size.width; ++col) {
                const int upper = (4 - dx) * src(row, col) + dx * src(row, col + right);
                const int lower = (4 - dx) * src(row + down, col) + dx * src(row + down, col + right);
                dst.set(row, col, ((4 - dy) * upper + dy * lower + rounding) >> 4);
            }
        }
    }
};

// Bicubic, SMPTE 421M 8.3.6.5.
class Bicubic {
public:
    template <class Src, class Dst>
    static void run(Src src, Dst dst, KeliSize size, const Position &at) {
        if (at.dx == 0 && at.dy == 0) return copy(src, dst, size);
        if (at.dy == 0) return across(src, dst, size, at);
        if (at.dx == 0) return downwards(src, dst, size, at);
        return both(src, dst, size, at);
    }

private:
    // Of the samples -1 to 2; their sum is 2 to the power of shift.
    struct Filter {
        int taps[4];
        int shift;
    };

    static const Filter &filterOf(int quarters) {
        static constexpr Filter filters[] = {
            {{0, 1, 0, 0}, 0}, {{-4, 53, 18, -3}, 6}, {{-1, 9, 9, -1}, 4}, {{-3, 18, 53, -4}, 6}};
        return filters[quarters];
    }

    template <class At>
    static int sum(const Filter &filter, At at) {
        const int *taps = filter.taps;
        return taps[0] * at(-1) + taps[1] * at(0) + taps[2] * at(1) + taps[3] * at(2);
    }

    static int limited(int sample) { return std::clamp(sample, 0, 255); }

    template <class Src, class Dst>
    static void copy(Src src, Dst dst, KeliSize size) {
        for (int row = 0; row < size.height; ++row) {
            for (int col = 0; col < size.width; ++col) dst.set(row, col, src(row, col));
        }
    }

    template <class Src, class Dst>
    static void across(Src src, Dst dst, KeliSize size, const Position &at) {
        const Filter filter = filterOf(at.dx);
        const int rounding = (1 << (filter.shift - 1)) - at.roundControl;
        for (int row = 0; row < size.height; ++row) {
            for (int col = 0; col < size.width; ++col) {
                const int value = sum(filter, [&](int k) { return src(row, col + k); });
                dst.set(row, col, limited((value + rounding) >> filter.shift));
            }
        }
    }

    template <class Src, class Dst>
    static void downwards(Src src, Dst dst, KeliSize size, const Position &at) {
        const Filter filter = filterOf(at.dy);
        const int rounding = (1 << (filter.shift - 1)) - 1 + at.roundControl;
        for (int row = 0; row < size.height; ++row) {
            for (int col = 0; col < size.width; ++col) {
                const int value = sum(filter, [&](int k) { return src(row + k, col); });
                dst.set(row, col, limited((value + rounding) >> filter.shift));
            }
        }
    }

    // Down first; what is left to the second division is 7 bits, whichever the filters are.
    template <class Src, class Dst>
    static void both(Src src, Dst dst, KeliSize size, const Position &at) {
        const Filter vertical = filterOf(at.dy), horizontal = filterOf(at.dx);
        const int shift = vertical.shift + horizontal.shift - 7;
        const int rounding = (1 << (shift - 1)) - 1 + at.roundControl;
        Kel16s lines[maxBlock][maxBlock + 3]; // from a column before the block on
        for (int row = 0; row < size.height; ++row) {
            for (int col = 0; col < size.width + 3; ++col) {
                const int value = sum(vertical, [&](int k) { return src(row + k, col - 1); });
                lines[row][col] = static_cast<Kel16s>((value + rounding) >> shift);
            }
        }
        for (int row = 0; row < size.height; ++row) {
            for (int col = 0; col < size.width; ++col) {
                const int value = sum(horizontal, [&](int k) { return lines[row][col + 1 + k]; });
                dst.set(row, col, limited((value + 64 - at.roundControl) >> 7));
            }
        }
    }
};

} // namespace vc1
} // namespace kelvara

#endif
