// deblocking.cpp - the deblocking post-filter.

#include "kelvc_mpeg4.h"

#include "../common/edges.h"

#include <algorithm>

using namespace kelvara;

namespace {

// ISO/IEC 14496-2 Annex F, deblocking filter. A line has ten samples, v[0] to v[9], and the edge lies between
// v[4] and v[5].
struct Thresholds {
    int qp, thr1, thr2;
};

// The standard's "//": to the nearest integer, halves away from zero.
int dividedBy8(int value) {
    return value < 0 ? -((4 - value) >> 3) : (value + 4) >> 3;
}

bool isSmooth(const int *v, const Thresholds &t) {
    int flat = 0;
    for (int i = 0; i < 9; ++i) flat += std::abs(v[i] - v[i + 1]) <= t.thr1;
    return flat >= t.thr2;
}

// DC offset mode: a low-pass filter of nine taps, where the samples do not differ by more than the quantiser
// explains. Behind the last sample it sees the outermost one if that belongs to the same area.
void smoothDC(const int *v, int qp, Line line) {
    static const int taps[9] = {1, 1, 2, 2, 4, 2, 2, 1, 1};
    if (*std::max_element(v + 1, v + 9) - *std::min_element(v + 1, v + 9) >= 2 * qp) return;
    int padded[16]; // from sample -3 on
    std::fill_n(padded, 4, std::abs(v[1] - v[0]) < qp ? v[0] : v[1]);
    std::copy_n(v + 1, 8, padded + 4);
    std::fill_n(padded + 12, 4, std::abs(v[8] - v[9]) < qp ? v[9] : v[8]);
    for (int n = 1; n <= 8; ++n) {
        int sum = 8;
        for (int k = 0; k < 9; ++k) sum += taps[k] * padded[n - 1 + k];
        n <= 4 ? line.setP(4 - n, sum >> 4) : line.setQ(n - 5, sum >> 4);
    }
}

// The highest of the four frequencies of the samples from p on.
int frequency(const int *p) {
    return dividedBy8(2 * p[0] - 5 * p[1] + 5 * p[2] - 2 * p[3]);
}

// Default mode: the frequency across the edge becomes as small as those on its sides.
void limitFrequency(const int *v, int qp, Line line) {
    const int across = frequency(v + 3);
    if (std::abs(across) >= qp) return;
    const int least = std::min({std::abs(across), std::abs(frequency(v + 1)), std::abs(frequency(v + 5))});
    const int half = (v[4] - v[5]) / 2;
    const int change = dividedBy8(5 * ((across < 0 ? -least : least) - across));
    const int d = clip3(std::min(0, half), std::max(0, half), change);
    line.setP(0, v[4] - d);
    line.setQ(0, v[5] + d);
}

void filterLine(Line line, const Thresholds &t) {
    int v[10];
    for (int i = 0; i < 5; ++i) {
        v[4 - i] = line.p(i);
        v[5 + i] = line.q(i);
    }
    isSmooth(v, t) ? smoothDC(v, t.qp, line) : limitFrequency(v, t.qp, line);
}

// across: bytes from one sample of a line to the next; along: from one line to the next.
KelStatus deblockEdge(Kel8u *p, int step, int minStep, std::ptrdiff_t across, std::ptrdiff_t along,
                      const Thresholds &t) {
    if (anyNull(p)) return kelStsNullPtrErr;
    if (step < minStep) return kelStsStepErr;
    if (t.qp < 1 || t.qp > 31 || t.thr1 < 0 || t.thr2 < 0) return kelStsRangeErr;
    for (int i = 0; i < 8; ++i) filterLine(Line(p + i * along, across), t);
    return kelStsNoErr;
}

} // namespace

KelStatus keliFilterDeblocking8x8HorEdge_MPEG4_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, int QP, int THR1,
                                                       int THR2) {
    return deblockEdge(pSrcDst, srcDstStep, 8, srcDstStep, 1, {QP, THR1, THR2});
}

KelStatus keliFilterDeblocking8x8VerEdge_MPEG4_8u_C1IR(Kel8u *pSrcDst, int srcDstStep, int QP, int THR1,
                                                       int THR2) {
    return deblockEdge(pSrcDst, srcDstStep, 10, 1, srcDstStep, {QP, THR1, THR2});
}
