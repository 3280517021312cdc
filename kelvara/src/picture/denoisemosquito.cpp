// denoisemosquito.cpp - the denoising filter against the flicker beside edges.

#include "kelvc.h"
#include "wholepicture.h"

#include <algorithm>
#include <vector>

using namespace kelvara;

static constexpr int side = 8; // of a block

static int blocksOf(int samples) {
    return (samples + side - 1) / side;
}

struct KeliDenoiseMosquitoState_8u_C1 {
    static constexpr unsigned ownId = 0x4D4E4C44;

    explicit KeliDenoiseMosquitoState_8u_C1(KeliSize pictureSize)
        : size(pictureSize),
          contrasts(static_cast<std::size_t>(blocksOf(size.width)) * blocksOf(size.height)),
          filtered(BorderedPicture::bytes(size)),
          least(size.width),
          greatest(size.width),
          limits(size.width) {}

    // Of the blocks of that row of samples.
    Kel8u *contrastsAt(int y) {
        return &contrasts[static_cast<std::size_t>(y / side) * blocksOf(size.width)];
    }

    unsigned id = ownId;
    KeliSize size;
    std::vector<Kel8u> contrasts;       // at the last call
    std::vector<Kel8u> filtered;        // over time
    std::vector<Kel8u> least, greatest; // of the columns of a row of blocks
    std::vector<Kel8u> limits;          // of a row of samples
};

using State = KeliDenoiseMosquitoState_8u_C1;

namespace {

// Both are of the picture, whose region of interest is roi.
struct Pair {
    const Kel8u *previous, *current;
    std::ptrdiff_t step;
    KeliRect roi;

    std::ptrdiff_t at(int y) const { return (roi.y + y) * step + roi.x; }
};

// ---- contrasts --------------------------------------------------------------------

void columnExtremes(const Pair &src, int from, int to, State &state) {
    Kel8u *least = state.least.data(), *greatest = state.greatest.data();
    std::fill_n(least, src.roi.width, Kel8u(255));
    std::fill_n(greatest, src.roi.width, Kel8u(0));
    for (int y = from; y < to; ++y) {
        const Kel8u *row = src.current + src.at(y);
        for (int x = 0; x < src.roi.width; ++x) {
            least[x] = row[x] < least[x] ? row[x] : least[x];
            greatest[x] = row[x] > greatest[x] ? row[x] : greatest[x];
        }
    }
}

// Rows are counted from the roi, blocks from the corner of the picture. Calls use(block, first column behind
// the last one) for each block of a row.
template <class Use>
void forBlocks(KeliRect roi, Use use) {
    for (int x = 0; x < roi.width;) {
        const int block = (roi.x + x) / side, end = std::min((block + 1) * side - roi.x, roi.width);
        use(block, x, end);
        x = end;
    }
}

void updateContrasts(const Pair &src, int from, int to, State &state) {
    columnExtremes(src, from, to, state);
    Kel8u *contrasts = state.contrastsAt(src.roi.y + from);
    forBlocks(src.roi, [&](int block, int first, int end) {
        const int least = *std::min_element(&state.least[first], state.least.data() + end);
        const int greatest = *std::max_element(&state.greatest[first], state.greatest.data() + end);
        contrasts[block] = static_cast<Kel8u>(std::max(greatest - least, 3 * contrasts[block] >> 2));
    });
}

// The limit of each sample of the row, so that the filters know of no blocks.
const Kel8u *limitsOf(const Pair &src, int y, State &state) {
    const Kel8u *contrasts = state.contrastsAt(src.roi.y + y);
    forBlocks(src.roi, [&](int block, int first, int end) {
        std::fill(state.limits.data() + first, state.limits.data() + end,
                  static_cast<Kel8u>(contrasts[block] >> 3));
    });
    return state.limits.data();
}

// ---- time and place ---------------------------------------------------------------

void filterOverTime(const Pair &src, int y, const Kel8u *limits, Kel8u *filtered) {
    const Kel8u *p = src.previous + src.at(y), *c = src.current + src.at(y);
    for (int x = 0; x < src.roi.width; ++x)
        filtered[x] = static_cast<Kel8u>((c[x] + nearOrSelf(p[x], c[x], limits[x]) + 1) >> 1);
}

inline int threeNear(const Kel8u *row, int sample, int limit) {
    return nearOrSelf(row[-1], sample, limit) + nearOrSelf(row[0], sample, limit) +
           nearOrSelf(row[1], sample, limit);
}

void smooth(const BorderedPicture &src, int y, const Kel8u *limits, Kel8u *dst, int width) {
    const Kel8u *above = src.row(y - 1), *row = src.row(y), *below = src.row(y + 1);
    for (int x = 0; x < width; ++x) {
        const int sample = row[x], limit = limits[x];
        const int around = threeNear(above + x, sample, limit) + threeNear(row + x, sample, limit) - sample +
                           threeNear(below + x, sample, limit);
        dst[x] = static_cast<Kel8u>((8 * sample + around + 8) >> 4);
    }
}

void denoise(const Pair &src, Kel8u *pDst, std::ptrdiff_t dstStep, State &state) {
    const BorderedPicture filtered(state.filtered.data(), {src.roi.width, src.roi.height});
    for (int from = 0; from < src.roi.height;) {
        const int to = std::min(((src.roi.y + from) / side + 1) * side - src.roi.y, src.roi.height);
        updateContrasts(src, from, to, state);
        const Kel8u *limits = limitsOf(src, from, state);
        for (int y = from; y < to; ++y) filterOverTime(src, y, limits, filtered.row(y));
        from = to;
    }
    filtered.close();
    for (int y = 0; y < src.roi.height; ++y) {
        const Kel8u *limits = limitsOf(src, y, state);
        smooth(filtered, y, limits, pDst + y * dstStep, src.roi.width);
    }
}

} // namespace

// ---- exported ---------------------------------------------------------------------

KelStatus keliFilterDenoiseMosquitoInitAlloc_8u_C1(State **ppState, KeliSize size) {
    if (anyNull(ppState)) return kelStsNullPtrErr;
    if (!isPictureSize(size)) return kelStsSizeErr;
    return allocState(ppState, size);
}

KelStatus keliFilterDenoiseMosquitoFree_8u_C1(State *pState) {
    return freeState(pState);
}

KelStatus keliFilterDenoiseMosquito_8u_C1R(const Kel8u *const pSrcPlane[2], int srcStep, Kel8u *pDst,
                                           int dstStep, KeliSize size, State *pState, KeliRect roi) {
    if (anyNull(pSrcPlane) || anyNull(pDst, pState)) return kelStsNullPtrErr;
    const Kel8u *previous = entry(pSrcPlane, 0), *current = entry(pSrcPlane, 1);
    if (anyNull(previous, current)) return kelStsNullPtrErr;
    if (pState->id != State::ownId) return kelStsContextErr;
    if (!isSameSize(size, pState->size) || !isInside(roi, size)) return kelStsSizeErr;
    if (srcStep < size.width || dstStep < size.width) return kelStsStepErr;
    const Pair src = {previous, current, srcStep, roi};
    denoise(src, pDst + static_cast<std::ptrdiff_t>(roi.y) * dstStep + roi.x, dstStep, *pState);
    return kelStsNoErr;
}
