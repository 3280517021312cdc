// denoiseadaptive.cpp - the denoising filter over time and place.

#include "kelvc.h"
#include "wholepicture.h"

#include <algorithm>
#include <vector>

using namespace kelvara;

struct KeliDenoiseAdaptiveState_8u_C1 {
    static constexpr unsigned ownId = 0x414E4C44;

    KeliDenoiseAdaptiveState_8u_C1(KeliSize pictureSize, KeliSize mask)
        : size(pictureSize),
          maskSize(mask),
          motion(static_cast<std::size_t>(size.width) * size.height),
          filtered(BorderedPicture::bytes(size)),
          moving(size.width),
          further(size.width),
          sums(size.width) {}

    unsigned id = ownId;
    KeliSize size, maskSize;
    std::vector<Kel8u> motion;          // at the last call, by the place in the picture
    std::vector<Kel8u> filtered;        // over time
    std::vector<Kel8u> moving, further; // rows of differences
    std::vector<int> sums;              // of the differences in the columns of the mask
};

using State = KeliDenoiseAdaptiveState_8u_C1;

namespace {

// ---- motion -----------------------------------------------------------------------

// The region of interest of the three pictures.
struct Sequence {
    const Kel8u *previous, *current, *next;
    std::ptrdiff_t step;
    KeliSize size;
};

void rowDifferences(const Sequence &src, int y, Kel8u *differences) {
    const Kel8u *p = src.previous + y * src.step, *c = src.current + y * src.step;
    const Kel8u *n = src.next + y * src.step;
    for (int x = 0; x < src.size.width; ++x) {
        const int before = std::abs(c[x] - p[x]), behind = std::abs(c[x] - n[x]);
        differences[x] = static_cast<Kel8u>(before > behind ? before : behind);
    }
}

// Means of the differences over the mask, row by row: the sums of the columns go down with it.
class MaskMeans {
public:
    MaskMeans(const Sequence &src, State &state)
        : m_src(src), m_state(state), m_down(state.maskSize.height / 2), m_right(state.maskSize.width / 2) {
        std::fill(state.sums.begin(), state.sums.end(), 0);
        for (int y = -m_down; y < m_down; ++y) addRow(y, 1);
    }

    // Rows are asked for in their order. Width of the region samples.
    const Kel8u *row(int y) {
        if (m_down == 0 && m_right == 0) {
            rowDifferences(m_src, y, m_state.moving.data());
            return m_state.moving.data();
        }
        addRow(y + m_down, 1);
        sumAlong();
        addRow(y - m_down, -1);
        return m_state.moving.data();
    }

private:
    void addRow(int y, int sign) {
        rowDifferences(m_src, std::clamp(y, 0, m_src.size.height - 1), m_state.further.data());
        const Kel8u *differences = m_state.further.data();
        int *sums = m_state.sums.data();
        for (int x = 0; x < m_src.size.width; ++x) sums[x] += sign * differences[x];
    }

    void sumAlong() {
        const int area = m_state.maskSize.width * m_state.maskSize.height;
        int sum = 0;
        for (int x = -m_right; x < m_right; ++x) sum += column(x);
        for (int x = 0; x < m_src.size.width; ++x) {
            sum += column(x + m_right);
            m_state.moving[x] = static_cast<Kel8u>(sum / area);
            sum -= column(x - m_right);
        }
    }

    int column(int x) const { return m_state.sums[std::clamp(x, 0, m_src.size.width - 1)]; }

    const Sequence &m_src;
    State &m_state;
    int m_down, m_right; // from the middle of the mask to its border
};

void updateMotion(const Kel8u *moving, Kel8u *motion, int width) {
    for (int x = 0; x < width; ++x) {
        const int before = 3 * motion[x] >> 2;
        motion[x] = static_cast<Kel8u>(moving[x] > before ? moving[x] : before);
    }
}

// ---- time -------------------------------------------------------------------------

void filterOverTime(const Sequence &src, int y, const Kel8u *motion, int threshold, Kel8u *filtered) {
    const Kel8u *p = src.previous + y * src.step, *c = src.current + y * src.step;
    const Kel8u *n = src.next + y * src.step;
    for (int x = 0; x < src.size.width; ++x) {
        const int margin = threshold - motion[x], positive = margin > 0 ? margin : 0;
        const int weight = positive < 16 ? positive : 16;
        const int mean = (p[x] + 2 * c[x] + n[x] + 2) >> 2;
        filtered[x] = static_cast<Kel8u>(((16 - weight) * c[x] + weight * mean + 8) >> 4);
    }
}

// ---- place ------------------------------------------------------------------------

// Weights 1 2 1 in the directions of blurFlag.
template <int blurFlag>
inline int blurred(const Kel8u *above, const Kel8u *row, const Kel8u *below, int x) {
    if (blurFlag == 1) return (row[x - 1] + 2 * row[x] + row[x + 1] + 2) >> 2;
    if (blurFlag == 2) return (above[x] + 2 * row[x] + below[x] + 2) >> 2;
    const int left = above[x - 1] + 2 * row[x - 1] + below[x - 1];
    const int middle = above[x] + 2 * row[x] + below[x];
    const int right = above[x + 1] + 2 * row[x + 1] + below[x + 1];
    return (left + 2 * middle + right + 8) >> 4;
}

template <int blurFlag>
void blur(const BorderedPicture &src, Kel8u *pDst, std::ptrdiff_t dstStep, KeliSize size, int threshold) {
    for (int y = 0; y < size.height; ++y) {
        const Kel8u *above = src.row(y - 1), *row = src.row(y), *below = src.row(y + 1);
        Kel8u *dst = pDst + y * dstStep;
        for (int x = 0; x < size.width; ++x)
            dst[x] =
                static_cast<Kel8u>(nearOrSelf(blurred<blurFlag>(above, row, below, x), row[x], threshold));
    }
}

void copy(const BorderedPicture &src, Kel8u *pDst, std::ptrdiff_t dstStep, KeliSize size) {
    for (int y = 0; y < size.height; ++y) std::memcpy(pDst + y * dstStep, src.row(y), size.width);
}

// ---- the filter -------------------------------------------------------------------

void denoise(const Sequence &src, Kel8u *pDst, std::ptrdiff_t dstStep, KeliRect roi, int threshold,
             int blurFlag, State &state) {
    const BorderedPicture filtered(state.filtered.data(), src.size);
    MaskMeans means(src, state);
    for (int y = 0; y < src.size.height; ++y) {
        Kel8u *motion = &state.motion[static_cast<std::size_t>(roi.y + y) * state.size.width + roi.x];
        updateMotion(means.row(y), motion, src.size.width);
        filterOverTime(src, y, motion, threshold, filtered.row(y));
    }
    filtered.close();
    switch (blurFlag) {
        case 1:
            return blur<1>(filtered, pDst, dstStep, src.size, threshold);
        case 2:
            return blur<2>(filtered, pDst, dstStep, src.size, threshold);
        case 3:
            return blur<3>(filtered, pDst, dstStep, src.size, threshold);
        default:
            return copy(filtered, pDst, dstStep, src.size);
    }
}

bool isMaskSize(KeliSize mask) {
    const auto isSide = [](int side) { return side >= 1 && side <= 15 && side % 2 == 1; };
    return isSide(mask.width) && isSide(mask.height);
}

} // namespace

// ---- exported ---------------------------------------------------------------------

KelStatus keliFilterDenoiseAdaptiveInitAlloc_8u_C1(State **ppState, KeliSize size, KeliSize maskSize) {
    if (anyNull(ppState)) return kelStsNullPtrErr;
    if (!isPictureSize(size) || !isMaskSize(maskSize)) return kelStsSizeErr;
    return allocState(ppState, size, maskSize);
}

KelStatus keliFilterDenoiseAdaptiveFree_8u_C1(State *pState) {
    return freeState(pState);
}

KelStatus keliFilterDenoiseAdaptive_8u_C1R(const Kel8u *const pSrcPlane[3], int srcStep, Kel8u *pDst,
                                           int dstStep, KeliSize size, KeliSize maskSize, KeliRect roi,
                                           int threshold, int blurFlag, State *pState) {
    if (anyNull(pSrcPlane) || anyNull(pDst, pState)) return kelStsNullPtrErr;
    const Kel8u *planes[3];
    for (int i = 0; i < 3; ++i) planes[i] = entry(pSrcPlane, i);
    if (anyNull(planes[0], planes[1], planes[2])) return kelStsNullPtrErr;
    if (pState->id != State::ownId) return kelStsContextErr;
    if (!isSameSize(size, pState->size) || !isSameSize(maskSize, pState->maskSize)) return kelStsSizeErr;
    if (!isInside(roi, size)) return kelStsSizeErr;
    if (srcStep < size.width || dstStep < size.width) return kelStsStepErr;
    if (threshold < 0 || threshold > 255 || blurFlag < 0 || blurFlag > 3) return kelStsRangeErr;
    const std::ptrdiff_t first = static_cast<std::ptrdiff_t>(roi.y) * srcStep + roi.x;
    const Sequence src = {
        planes[0] + first, planes[1] + first, planes[2] + first, srcStep, {roi.width, roi.height}};
    Kel8u *dst = pDst + static_cast<std::ptrdiff_t>(roi.y) * dstStep + roi.x;
    denoise(src, dst, dstStep, roi, threshold, blurFlag, *pState);
    return kelStsNoErr;
}
