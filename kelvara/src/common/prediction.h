// prediction.h - the prediction of a block from one or two references.

#ifndef KELVARA_PREDICTION_H
#define KELVARA_PREDICTION_H

#include "checks.h"
#include "halfsample.h"

namespace kelvara {

// Where a prediction comes from.
struct Reference {
    const Kel8u *p;
    int step;
    int mcType;
};

struct Bidirectional {
    Reference forward, backward;
};

inline bool anyNull(const Reference &ref) {
    return anyNull(ref.p);
}
inline bool anyNull(const Bidirectional &refs) {
    return anyNull(refs.forward) || anyNull(refs.backward);
}

inline bool tooNarrow(const Reference &ref, int width) {
    return tooNarrow<Kel8u>(ref.step, width);
}
inline bool tooNarrow(const Bidirectional &refs, int width) {
    return tooNarrow(refs.forward, width) || tooNarrow(refs.backward, width);
}

inline bool isMcType(const Reference &ref) {
    return isMcType(ref.mcType);
}
inline bool isMcType(const Bidirectional &refs) {
    return isMcType(refs.forward) && isMcType(refs.backward);
}

inline bool isRoundControl(int roundControl) {
    return roundControl == 0 || roundControl == 1;
}

// A block of W x H predicted samples; with two channels a row holds W / 2 interleaved pairs. All that is done
// with a prediction goes over these samples, so that the positions of two references do not multiply.
template <int W, int H, int channels = 1>
class Prediction {
public:
    Prediction(const Reference &ref, int roundControl) { predict(ref, roundControl); }

    // ISO/IEC 13818-2 7.6.7.1: the mean of both, halves rounded up.
    Prediction(const Bidirectional &refs, int roundControl) {
        predict(refs.forward, roundControl);
        const Prediction backward(refs.backward, roundControl);
        for (int i = 0; i < W * H; ++i) m_samples[i] = (m_samples[i] + backward.m_samples[i] + 1) >> 1;
    }

    int operator()(int row, int col) const { return m_samples[row * W + col]; }

private:
    void predict(const Reference &ref, int roundControl) {
        const Samples<Kel8u> full(ref.p, ref.step);
        const auto keep = [this](auto block) {
            for (int row = 0; row < H; ++row) {
                for (int col = 0; col < W; ++col)
                    m_samples[row * W + col] = static_cast<Kel8u>(block(row, col));
            }
        };
        if (roundControl) {
            atPosition<1, channels>(ref.mcType, full, keep);
        } else {
            atPosition<0, channels>(ref.mcType, full, keep);
        }
    }

    Kel8u m_samples[W * H];
};

} // namespace kelvara

#endif
