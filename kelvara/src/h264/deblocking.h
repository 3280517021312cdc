// deblocking.h - the edge filters of ITU-T H.264 for one line of samples.

#ifndef KELVARA_H264_DEBLOCKING_H
#define KELVARA_H264_DEBLOCKING_H

#include "../common/edges.h"

namespace kelvara {

// 8.7.2.3, what luma and chroma share: the first sample of either side moves by at most tc.
inline void moveTogether(Line line, int tc) {
    const int delta = clip3(-tc, tc, (((line.q(0) - line.p(0)) * 4) + (line.p(1) - line.q(1)) + 4) >> 3);
    const int p0 = line.p(0), q0 = line.q(0);
    line.setP(0, p0 + delta);
    line.setQ(0, q0 - delta);
}

inline bool smoothP(Line line, int beta) {
    return std::abs(line.p(2) - line.p(0)) < beta;
}

// 8.7.2.3: the second sample in front of the edge.
inline int movedP1(Line line, int tc0) {
    return line.p(1) +
           clip3(-tc0, tc0, (line.p(2) + ((line.p(0) + line.q(0) + 1) >> 1) - 2 * line.p(1)) >> 1);
}

// The samples in front of the edge, before and behind a filter of strength 4.
struct StrongSide {
    int p0, p1, p2;
};

// 8.7.2.4, for the side in front of the edge.
inline StrongSide strongSide(Line line, int alpha, int beta) {
    const int p0 = line.p(0), p1 = line.p(1), p2 = line.p(2), q0 = line.q(0), q1 = line.q(1);
    if (!smoothP(line, beta) || std::abs(p0 - q0) >= (alpha >> 2) + 2)
        return {(2 * p1 + p0 + q1 + 2) >> 2, p1, p2};
    return {(p2 + 2 * p1 + 2 * p0 + 2 * q0 + q1 + 4) >> 3, (p2 + p1 + p0 + q0 + 2) >> 2,
            (2 * line.p(3) + 3 * p2 + p1 + p0 + q0 + 4) >> 3};
}

inline void setSide(Line line, const StrongSide &side) {
    line.setP(0, side.p0);
    line.setP(1, side.p1);
    line.setP(2, side.p2);
}

struct LumaFilter {
    static constexpr int most = 4;

    static void run(Line line, const Segment &segment) {
        segment.strength < 4 ? normal(line, segment) : strong(line, segment);
    }

    static void normal(Line line, const Segment &segment) {
        const int tc0 = segment.threshold;
        const bool smoothBefore = smoothP(line, segment.beta);
        const bool smoothBehind = smoothP(line.turned(), segment.beta);
        const int p1 = movedP1(line, tc0), q1 = movedP1(line.turned(), tc0);
        moveTogether(line, tc0 + smoothBefore + smoothBehind);
        if (smoothBefore) line.setP(1, p1);
        if (smoothBehind) line.setQ(1, q1);
    }

    static void strong(Line line, const Segment &segment) {
        const StrongSide before = strongSide(line, segment.alpha, segment.beta);
        const StrongSide behind = strongSide(line.turned(), segment.alpha, segment.beta);
        setSide(line, before);
        setSide(line.turned(), behind);
    }
};

struct ChromaFilter {
    static constexpr int most = 4;

    static void run(Line line, const Segment &segment) {
        if (segment.strength < 4) return moveTogether(line, segment.threshold + 1);
        const int p0 = (2 * line.p(1) + line.p(0) + line.q(1) + 2) >> 2;
        const int q0 = (2 * line.q(1) + line.q(0) + line.p(1) + 2) >> 2;
        line.setP(0, p0);
        line.setQ(0, q0);
    }
};

} // namespace kelvara

#endif
