// interpolateinterleaved.cpp - the exported interpolations of interleaved chroma of H.264.

#include "../common/checks.h"
#include "interpolate.h"
#include "kelvc.h"

namespace kelvara {

namespace {

// A block with samples outside of the picture, which have the value of the nearest one in it.
template <class Picture>
class Bounded {
public:
    Bounded(Picture picture, KeliSize size, long long top, long long left)
        : m_picture(picture), m_size(size), m_top(top), m_left(left) {}

    int operator()(int row, int col) const {
        return m_picture(inside(m_top + row, m_size.height), inside(m_left + col, m_size.width));
    }

private:
    static int inside(long long i, int size) {
        return static_cast<int>(std::clamp<long long>(i, 0, size - 1));
    }

    Picture m_picture;
    KeliSize m_size;
    long long m_top, m_left; // of the block in the picture
};

bool isPicture(KeliSize size) {
    return size.width >= 1 && size.height >= 1;
}

} // namespace

} // namespace kelvara

using namespace kelvara;

KelStatus keliInterpolateChroma_H264_8u_C2P2R(const Kel8u *pSrc, int srcStep, Kel8u *pDstU, Kel8u *pDstV,
                                              int dstStep, int dx, int dy, KeliSize roi) {
    if (anyNull(pSrc, pDstU, pDstV)) return kelStsNullPtrErr;
    if (!isBlock(roi)) return kelStsSizeErr;
    if (tooNarrow<Kel8u>(srcStep, 2 * roi.width) || tooNarrow<Kel8u>(dstStep, roi.width))
        return kelStsStepErr;
    if (dx < 0 || dx > 7 || dy < 0 || dy > 7) return kelStsRangeErr;
    const Samples<Kel8u> src(pSrc, srcStep);
    interpolateChroma(Interleaved(src, 0), Target<Kel8u>(pDstU, dstStep), dx, dy, roi);
    interpolateChroma(Interleaved(src, 1), Target<Kel8u>(pDstV, dstStep), dx, dy, roi);
    return kelStsNoErr;
}

KelStatus keliInterpolateChromaBlock_H264_8u_C2P2R(const KeliInterpolateInfo *pInfo) {
    if (anyNull(pInfo)) return kelStsNullPtrErr;
    const KeliInterpolateInfo info =
        load<KeliInterpolateInfo>(reinterpret_cast<const unsigned char *>(pInfo));
    const KeliSize frame = info.sizeFrame, block = info.sizeBlock;
    if (anyNull(info.pSrc, info.pDstU, info.pDstV)) return kelStsNullPtrErr;
    if (!isPicture(frame) || !isBlock(block)) return kelStsSizeErr;
    if (tooNarrow<Kel8u>(info.srcStep, 2LL * frame.width) || tooNarrow<Kel8u>(info.dstStep, block.width))
        return kelStsStepErr;
    const long long top = 0LL + info.blockPos.y + (info.pointVector.y >> 3);
    const long long left = 0LL + info.blockPos.x + (info.pointVector.x >> 3);
    const Samples<Kel8u> src(info.pSrc, info.srcStep);
    Kel8u *const planes[] = {info.pDstU, info.pDstV};
    for (int i = 0; i < 2; ++i) {
        interpolateChroma(Bounded(Interleaved(src, i), frame, top, left),
                          Target<Kel8u>(planes[i], info.dstStep), info.pointVector.x & 7,
                          info.pointVector.y & 7, block);
    }
    return kelStsNoErr;
}
