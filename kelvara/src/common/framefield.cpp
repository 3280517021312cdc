// framefield.cpp - whether a macroblock is smoother as a frame or as two fields.

#include "checks.h"
#include "kelvc.h"
#include "samples.h"

#include <cstdlib>

namespace kelvara {

// ISO/IEC 14496-2, adaptive frame/field DCT: differences between the lines 2i, 2i + 1 and 2i + 2 against
// those between lines of the same field, for i from 0 to 6.
template <class T>
static KelStatus frameFieldSad(const T *pSrc, int srcStep, Kel32s *pFrameSAD, Kel32s *pFieldSAD) {
    if (anyNull(pSrc) || anyNull(pFrameSAD, pFieldSAD)) return kelStsNullPtrErr;
    if (tooNarrow<T>(srcStep, 16)) return kelStsStepErr;
    const Samples<T> src(pSrc, srcStep);
    int frame = 0, field = 0;
    for (int row = 0; row < 14; ++row) {
        for (int col = 0; col < 16; ++col) {
            frame += std::abs(src(row, col) - src(row + 1, col));
            field += std::abs(src(row, col) - src(row + 2, col));
        }
    }
    store<Kel32s>(pFrameSAD, frame);
    store<Kel32s>(pFieldSAD, field);
    return kelStsNoErr;
}

} // namespace kelvara

using namespace kelvara;

KelStatus keliFrameFieldSAD16x16_8u32s_C1R(const Kel8u *pSrc, int srcStep, Kel32s *pFrameSAD,
                                           Kel32s *pFieldSAD) {
    return frameFieldSad(pSrc, srcStep, pFrameSAD, pFieldSAD);
}

KelStatus keliFrameFieldSAD16x16_16s32s_C1R(const Kel16s *pSrc, int srcStep, Kel32s *pFrameSAD,
                                            Kel32s *pFieldSAD) {
    return frameFieldSad(pSrc, srcStep, pFrameSAD, pFieldSAD);
}
