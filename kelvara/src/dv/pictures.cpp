// pictures.cpp - decoded macroblocks of DV stored as pictures of 4:2:2, also smaller ones.

#include "../common/checks.h"
#include "../common/samples.h"
#include "kelvc.h"
#include "sampling.h"

#include <algorithm>
#include <cstring>

namespace kelvara {

static constexpr int segmentMacroblocks = 5;
static constexpr int macroblockElements100 = 8 * 64;

using Full411 = Sampling411<8>;
using FullEdge = Edge411<8>;
using Full420 = Sampling420<8, true>;
using Full422 = Sampling422<8>;

// ---- kernel --------------------------------------------------------------------

// The byte of a mean of Count samples around 0. What is below 0 is limited before it is divided, as division
// would round it up.
template <int Count>
static int levelOf(int sum) {
    const unsigned raised = static_cast<unsigned>(std::max(0, sum + 128 * Count + Count / 2));
    return static_cast<int>(std::min(raised / Count, 255u));
}

// A macroblock at 1 / Zoom of its width and height.
template <class Sampling, int Zoom>
class Reduced {
public:
    static constexpr int height = Sampling::height / Zoom, pairs = Sampling::width / Zoom / 2;
    static constexpr int rowBytes = 4 * pairs;

    explicit Reduced(const Kel16s *pSrc) : m_elements(pSrc, 0) {}

    int luma(int row, int col) const {
        int sum = 0;
        for (int y = 0; y < Zoom; ++y) {
            for (int x = 0; x < Zoom; ++x) sum += at(Sampling::luma(row * Zoom + y, col * Zoom + x));
        }
        return levelOf<Zoom * Zoom>(sum);
    }

    // Of a pair of pixels. A sample for several pixels of a row counts once instead of for each: all samples
    // have the same number of them.
    int colour(int block, int row, int pair) const {
        int sum = 0;
        for (int y = 0; y < Zoom; ++y) {
            for (int i = 0; i < columns; ++i) {
                const int x = 2 * Zoom * pair + Sampling::pixelsOfColour * i;
                sum += at(64 * block + Sampling::colour(row * Zoom + y, x));
            }
        }
        return levelOf<Zoom * columns>(sum);
    }

private:
    static constexpr int columns = std::max(1, 2 * Zoom / Sampling::pixelsOfColour);

    int at(int element) const { return m_elements(0, element); }

    Samples<Kel16s> m_elements;
};

template <class Sampling, int Zoom>
static void storePicture(const Kel16s *pSrc, Kel8u *pDst, int dstStep) {
    const Reduced<Sampling, Zoom> picture(pSrc);
    const Target<Kel8u> dst(pDst, dstStep);
    for (int row = 0; row < picture.height; ++row) {
        for (int pair = 0; pair < picture.pairs; ++pair) {
            dst.set(row, 4 * pair, picture.luma(row, 2 * pair));
            dst.set(row, 4 * pair + 1, picture.colour(Sampling::cb, row, pair));
            dst.set(row, 4 * pair + 2, picture.luma(row, 2 * pair + 1));
            dst.set(row, 4 * pair + 3, picture.colour(Sampling::cr, row, pair));
        }
    }
}

// ---- argument checks -----------------------------------------------------------

// A copy of a caller's array of pointers, which may lie at any byte. All are null if there is no array.
template <class T, int Count>
struct Pointers {
    explicit Pointers(T *const *array) {
        if (array) std::memcpy(at, static_cast<const void *>(array), sizeof at);
    }
    bool anyNull() const { return std::find(at, at + Count, nullptr) != at + Count; }

    T *at[Count] = {};
};

template <class Sampling, int Zoom>
static KelStatus storeOne(const Kel16s *pSrc, Kel8u *pDst, int dstStep) {
    if (anyNull(pSrc, pDst)) return kelStsNullPtrErr;
    if (dstStep < Reduced<Sampling, Zoom>::rowBytes) return kelStsStepErr;
    storePicture<Sampling, Zoom>(pSrc, pDst, dstStep);
    return kelStsNoErr;
}

template <class Sampling, int Zoom>
static KelStatus storeFive(const Kel16s *const *pSrc, Kel8u *const *pDst,
                           int dstStep = Reduced<Sampling, Zoom>::rowBytes) {
    const Pointers<const Kel16s, segmentMacroblocks> src(pSrc);
    const Pointers<Kel8u, segmentMacroblocks> dst(pDst);
    if (src.anyNull() || dst.anyNull()) return kelStsNullPtrErr;
    if (dstStep < Reduced<Sampling, Zoom>::rowBytes) return kelStsStepErr;
    for (int i = 0; i < segmentMacroblocks; ++i) storePicture<Sampling, Zoom>(src.at[i], dst.at[i], dstStep);
    return kelStsNoErr;
}

static KelStatus storeTenHalves(const Kel16s *pSrc, Kel8u *const *pDst, int dstStep) {
    const Pointers<Kel8u, 2 * segmentMacroblocks> dst(pDst);
    if (anyNull(pSrc) || dst.anyNull()) return kelStsNullPtrErr;
    if (dstStep < Reduced<Half100<0>, 1>::rowBytes) return kelStsStepErr;
    for (int i = 0; i < segmentMacroblocks; ++i) {
        const Kel16s *macroblock = pSrc + i * macroblockElements100;
        storePicture<Half100<0>, 1>(macroblock, dst.at[2 * i], dstStep);
        storePicture<Half100<1>, 1>(macroblock, dst.at[2 * i + 1], dstStep);
    }
    return kelStsNoErr;
}

} // namespace kelvara

using namespace kelvara;

// ---- exported functions --------------------------------------------------------

KelStatus keliYCrCb411ToYCbCr422_EdgeDV_16s8u_P3C2R(const Kel16s *pSrc, Kel8u *pDst, int dstStep) {
    return storeOne<FullEdge, 1>(pSrc, pDst, dstStep);
}

KelStatus keliYCrCb411ToYCbCr422_ZoomOut2_EdgeDV_16s8u_P3C2R(const Kel16s *pSrc, Kel8u *pDst, int dstStep) {
    return storeOne<FullEdge, 2>(pSrc, pDst, dstStep);
}

KelStatus keliYCrCb411ToYCbCr422_ZoomOut4_EdgeDV_16s8u_P3C2R(const Kel16s *pSrc, Kel8u *pDst, int dstStep) {
    return storeOne<FullEdge, 4>(pSrc, pDst, dstStep);
}

KelStatus keliYCrCb411ToYCbCr422_ZoomOut8_EdgeDV_16s8u_P3C2R(const Kel16s *pSrc, Kel8u *pDst, int dstStep) {
    return storeOne<FullEdge, 8>(pSrc, pDst, dstStep);
}

KelStatus keliYCrCb411ToYCbCr422_5MBDV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5],
                                                   int dstStep) {
    return storeFive<Full411, 1>(pSrc, pDst, dstStep);
}

KelStatus keliYCrCb411ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5],
                                                            int dstStep) {
    return storeFive<Full411, 2>(pSrc, pDst, dstStep);
}

KelStatus keliYCrCb411ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5],
                                                            int dstStep) {
    return storeFive<Full411, 4>(pSrc, pDst, dstStep);
}

KelStatus keliYCrCb411ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R(const Kel16s *const pSrc[5],
                                                            Kel8u *const pDst[5]) {
    return storeFive<Full411, 8>(pSrc, pDst);
}

KelStatus keliYCrCb420ToYCbCr422_5MBDV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5],
                                                   int dstStep) {
    return storeFive<Full420, 1>(pSrc, pDst, dstStep);
}

KelStatus keliYCrCb420ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5],
                                                            int dstStep) {
    return storeFive<Full420, 2>(pSrc, pDst, dstStep);
}

KelStatus keliYCrCb420ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5],
                                                            int dstStep) {
    return storeFive<Full420, 4>(pSrc, pDst, dstStep);
}

KelStatus keliYCrCb420ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R(const Kel16s *const pSrc[5],
                                                            Kel8u *const pDst[5]) {
    return storeFive<Full420, 8>(pSrc, pDst);
}

KelStatus keliYCrCb422ToYCbCr422_5MBDV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5],
                                                   int dstStep) {
    return storeFive<Full422, 1>(pSrc, pDst, dstStep);
}

KelStatus keliYCrCb422ToYCbCr422_ZoomOut2_5MBDV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5],
                                                            int dstStep) {
    return storeFive<Full422, 2>(pSrc, pDst, dstStep);
}

KelStatus keliYCrCb422ToYCbCr422_ZoomOut4_5MBDV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5],
                                                            int dstStep) {
    return storeFive<Full422, 4>(pSrc, pDst, dstStep);
}

KelStatus keliYCrCb422ToYCbCr422_ZoomOut8_5MBDV_16s8u_P3C2R(const Kel16s *const pSrc[5],
                                                            Kel8u *const pDst[5]) {
    return storeFive<Full422, 8>(pSrc, pDst);
}

KelStatus keliYCrCb422ToYCbCr422_10HalvesMB16x8_DV100_16s8u_P3C2R(const Kel16s *pSrc, Kel8u *const pDst[10],
                                                                  int dstStep) {
    return storeTenHalves(pSrc, pDst, dstStep);
}

KelStatus keliYCrCb420ToYCbCr422_8x8x5MB_DV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5],
                                                        int dstStep) {
    return storeFive<Sampling420<4, false>, 1>(pSrc, pDst, dstStep);
}

KelStatus keliYCrCb411ToYCbCr422_16x4x5MB_DV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5],
                                                         int dstStep) {
    return storeFive<Sampling411<4>, 1>(pSrc, pDst, dstStep);
}

KelStatus keliYCrCb422ToYCbCr422_8x4x5MB_DV_16s8u_P3C2R(const Kel16s *const pSrc[5], Kel8u *const pDst[5],
                                                        int dstStep) {
    return storeFive<Sampling422<4>, 1>(pSrc, pDst, dstStep);
}

KelStatus keliYCrCb411ToYCbCr422_8x8MB_DV_16s8u_P3C2R(const Kel16s *pSrc, Kel8u *pDst, int dstStep) {
    return storeOne<Edge411<4>, 1>(pSrc, pDst, dstStep);
}
