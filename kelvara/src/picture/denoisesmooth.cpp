// denoisesmooth.cpp - the denoising filter that smooths and keeps edges.

#include "kelvc.h"
#include "wholepicture.h"

using namespace kelvara;

namespace {

// The samples before, at and behind those of a row that is written.
struct Neighbours {
    const Kel8u *before, *at, *behind;
};

void smooth(const Neighbours &src, Kel8u *dst, int width, int threshold) {
    for (int x = 0; x < width; ++x) {
        const int sample = src.at[x];
        const int around =
            nearOrSelf(src.before[x], sample, threshold) + nearOrSelf(src.behind[x], sample, threshold);
        dst[x] = static_cast<Kel8u>((around + 2 * sample + 2) >> 2);
    }
}

// Both work pictures fit into the buffer: (width + 2) x (height + 2) each.
void denoise(const Kel8u *pSrc, std::ptrdiff_t srcStep, Kel8u *pDst, std::ptrdiff_t dstStep, KeliSize size,
             int threshold, Kel8u *pWorkBuffer) {
    const BorderedPicture full(pWorkBuffer, size);
    const BorderedPicture smoothed(pWorkBuffer + BorderedPicture::bytes(size), size);
    for (int y = 0; y < size.height; ++y) std::memcpy(full.row(y), pSrc + y * srcStep, size.width);
    full.close();
    for (int y = 0; y < size.height; ++y) {
        const Kel8u *row = full.row(y);
        smooth({row - 1, row, row + 1}, smoothed.row(y), size.width, threshold);
    }
    smoothed.close();
    for (int y = 0; y < size.height; ++y) {
        smooth({smoothed.row(y - 1), smoothed.row(y), smoothed.row(y + 1)}, pDst + y * dstStep, size.width,
               threshold);
    }
}

} // namespace

KelStatus keliFilterDenoiseSmooth_8u_C1R(const Kel8u *pSrc, int srcStep, Kel8u *pDst, int dstStep,
                                         KeliSize size, int threshold, KeliRect roi, Kel8u *pWorkBuffer) {
    if (anyNull(pSrc, pDst, pWorkBuffer)) return kelStsNullPtrErr;
    if (!isPictureSize(size) || !isInside(roi, size)) return kelStsSizeErr;
    if (srcStep < size.width || dstStep < size.width) return kelStsStepErr;
    if (threshold < 0 || threshold > 255) return kelStsRangeErr;
    const Kel8u *src = pSrc + static_cast<std::ptrdiff_t>(roi.y) * srcStep + roi.x;
    Kel8u *dst = pDst + static_cast<std::ptrdiff_t>(roi.y) * dstStep + roi.x;
    denoise(src, srcStep, dst, dstStep, {roi.width, roi.height}, threshold, pWorkBuffer);
    return kelStsNoErr;
}
