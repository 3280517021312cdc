// intensity.cpp - the exported interpolation of VC-1 from references with compensated intensity.

#include "../common/checks.h"
#include "interpolate.h"
#include "kelvc.h"

namespace kelvara {
namespace vc1 {

// Its flags apart, a record is one of numbers that need no judgement before they are used.
using Param = KeliInterpolateICBlockVC1_8u;

static bool isFlag(int value) {
    return value == 0 || value == 1;
}

static bool isFrame(const Param &param) {
    const bool inFields = param.fieldPrediction == 1 || param.fieldPadding == 1;
    return param.sizeFrame.width >= 1 && param.sizeFrame.height >= (inFields ? 2 : 1);
}

// The row of the frame for a row of the reference, which may be outside of it.
static int rowOfFrame(const Param &param, long long row) {
    const int height = param.sizeFrame.height;
    if (param.fieldPrediction) {
        const int rowsOfField = (height + 1 - param.bottomField) / 2;
        return static_cast<int>(2 * std::clamp<long long>(row, 0, rowsOfField - 1)) + param.bottomField;
    }
    if (param.fieldPadding && row < 0) return static_cast<int>(row & 1);
    if (param.fieldPadding && row >= height) return height - 1 - static_cast<int>((height - 1 - row) & 1);
    return static_cast<int>(std::clamp<long long>(row, 0, height - 1));
}

// The part of a compensated reference that a block of one colour needs: from a column before it and a row
// above it on to two behind and below it.
class Compensated {
public:
    template <class Frame>
    Compensated(Frame frame, const Param &param) {
        const int width = param.sizeBlock.width + 3, height = param.sizeBlock.height + 3;
        int cols[side];
        for (int col = 0; col < width; ++col) {
            const long long x = -1LL + param.pointBlockPos.x + col;
            cols[col] = static_cast<int>(std::clamp<long long>(x, 0, param.sizeFrame.width - 1));
        }
        for (int row = 0; row < height; ++row) {
            const int y = rowOfFrame(param, -1LL + param.pointBlockPos.y + row);
            const Kel8u *table = y % 2 ? param.pLUTBottom : param.pLUTTop;
            for (int col = 0; col < width; ++col) m_samples[row][col] = table[frame(y, cols[col])];
        }
    }

    int operator()(int row, int col) const { return m_samples[row + 1][col + 1]; }

private:
    static const int side = maxBlock + 3;

    Kel8u m_samples[side][side];
};

static KelStatus check(const Param &param, int channels) {
    const long long rowBytes = 1LL * channels * param.sizeBlock.width;
    if (anyNull(param.pSrc, param.pDst, param.pLUTBottom, param.pLUTTop)) return kelStsNullPtrErr;
    if (!isFrame(param) || !isBlock(param.sizeBlock)) return kelStsSizeErr;
    if (param.srcStep < rowBytes || param.dstStep < rowBytes) return kelStsStepErr;
    if (!isPosition({param.dx, param.dy, param.roundControl})) return kelStsRangeErr;
    const bool flags =
        isFlag(param.fieldPrediction) && isFlag(param.bottomField) && isFlag(param.fieldPadding);
    return flags ? kelStsNoErr : kelStsRangeErr;
}

// The record, and a block of one or two interleaved colours.
template <class Filter, int channels>
static KelStatus interpolate(const Param *pParam) {
    if (anyNull(pParam)) return kelStsNullPtrErr;
    const auto param = load<Param>(reinterpret_cast<const unsigned char *>(pParam));
    const KelStatus status = check(param, channels);
    if (status != kelStsNoErr) return status;
    const Position at = {param.dx, param.dy, param.roundControl};
    const Samples<Kel8u> frame(param.pSrc, param.srcStep);
    const Target<Kel8u> dst(param.pDst, param.dstStep);
    if constexpr (channels == 1) {
        const Compensated block(frame, param);
        Filter::run([&](int row, int col) { return block(row, col); }, dst, param.sizeBlock, at);
    } else {
        for (int i = 0; i < channels; ++i) {
            const Compensated block(Interleaved(frame, i), param);
            const auto samples = [&](int row, int col) { return block(row, col); };
            Filter::run(samples, Interleaved(dst, i), param.sizeBlock, at);
        }
    }
    return kelStsNoErr;
}

} // namespace vc1
} // namespace kelvara

using namespace kelvara::vc1;

KelStatus keliInterpolateICBilinearBlock_VC1_8u_C1R(const KeliInterpolateICBlockVC1_8u *pParam) {
    return interpolate<Bilinear, 1>(pParam);
}

KelStatus keliInterpolateICBilinearBlock_VC1_8u_C2R(const KeliInterpolateICBlockVC1_8u *pParam) {
    return interpolate<Bilinear, 2>(pParam);
}

KelStatus keliInterpolateICBicubicBlock_VC1_8u_C1R(const KeliInterpolateICBlockVC1_8u *pParam) {
    return interpolate<Bicubic, 1>(pParam);
}
