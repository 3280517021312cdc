// edges.h - the edges of a macroblock and the samples across them, for deblocking filters.

#ifndef KELVARA_EDGES_H
#define KELVARA_EDGES_H

#include "checks.h"
#include "keltypes.h"

#include <cstddef>
#include <cstdlib>

namespace kelvara {

inline int clip3(int low, int high, int value) {
    return value < low ? low : value > high ? high : value;
}

// The samples of a line across an edge: p(0) is the last one in front of it, q(0) the first one behind it.
class Line {
public:
    Line(Kel8u *q0, std::ptrdiff_t across) : m_q0(q0), m_across(across) {}

    int p(int i) const { return m_q0[-(i + 1) * m_across]; }
    int q(int i) const { return m_q0[i * m_across]; }
    void setP(int i, int value) const { m_q0[-(i + 1) * m_across] = limited(value); }
    void setQ(int i, int value) const { m_q0[i * m_across] = limited(value); }

    // The same line seen from its other side.
    Line turned() const { return Line(m_q0 - m_across, -m_across); }

private:
    static Kel8u limited(int value) { return static_cast<Kel8u>(clip3(0, 255, value)); }

    Kel8u *m_q0;
    std::ptrdiff_t m_across;
};

// Whether a line shows the small step of a block's edge and no edge of the picture. Both standards have the
// same condition.
inline bool isBlocky(Line line, int alpha, int beta) {
    return std::abs(line.p(0) - line.q(0)) < alpha && std::abs(line.p(1) - line.p(0)) < beta &&
           std::abs(line.q(1) - line.q(0)) < beta;
}

// What the arguments of a filter say of one segment.
struct Segment {
    int strength, alpha, beta, threshold;
};

// The edges of one direction in a macroblock: how many, their distance in samples, the segments of an edge,
// the lines of a segment, how many strengths and thresholds lie between one edge's and the next one's,
// whether each segment has a threshold, and the colours of a sample.
struct EdgeShape {
    int edges, distance, segments, lines;
    int strengthStep, thresholdStep;
    bool thresholdEach;
    int channels;
};

enum Direction { VerEdge, HorEdge };

inline bool strengthsInRange(const EdgeShape &shape, const Kel8u *pStrengths, int most) {
    for (int edge = 0; edge < shape.edges; ++edge) {
        for (int s = 0; s < shape.segments; ++s) {
            if (pStrengths[edge * shape.strengthStep + s] > most) return false;
        }
    }
    return true;
}

// Filters all lines of a segment; `along` bytes lie between two of them.
template <class Filter, int channels>
inline void filterSegment(Kel8u *first, std::ptrdiff_t across, std::ptrdiff_t along, int lines,
                          const Segment &segment) {
    for (int line = 0; line < lines; ++line) {
        for (int channel = 0; channel < channels; ++channel) {
            const Line samples(first + line * along + channel, across);
            if (isBlocky(samples, segment.alpha, segment.beta)) Filter::run(samples, segment);
        }
    }
}

// Filter has `most`, the greatest strength, and run(line, segment) for a line to be filtered; Shape has
// `value`, an EdgeShape.
template <class Filter, class Shape, Direction direction>
inline void filterEdges(Kel8u *p, int step, const Kel8u *pAlpha, const Kel8u *pBeta, const Kel8u *pThresholds,
                        const Kel8u *pStrengths) {
    constexpr EdgeShape shape = Shape::value;
    const std::ptrdiff_t across = direction == VerEdge ? shape.channels : step;
    const std::ptrdiff_t along = direction == VerEdge ? step : shape.channels;
    for (int edge = 0; edge < shape.edges; ++edge) {
        const int inside = edge > 0;
        for (int s = 0; s < shape.segments; ++s) {
            const int threshold = edge * shape.thresholdStep + (shape.thresholdEach ? s : 0);
            const Segment segment = {pStrengths[edge * shape.strengthStep + s], pAlpha[inside], pBeta[inside],
                                     pThresholds[threshold]};
            if (segment.strength == 0) continue;
            filterSegment<Filter, shape.channels>(
                p + edge * shape.distance * across + s * shape.lines * along, across, along, shape.lines,
                segment);
        }
    }
}

// The whole function: step at least minStep, strengths up to Filter::most.
template <class Filter, class Shape, Direction direction>
inline KelStatus deblock(Kel8u *p, int step, int minStep, const Kel8u *pAlpha, const Kel8u *pBeta,
                         const Kel8u *pThresholds, const Kel8u *pStrengths) {
    if (anyNull(p, pAlpha, pBeta, pThresholds, pStrengths)) return kelStsNullPtrErr;
    if (step < minStep) return kelStsStepErr;
    if (!strengthsInRange(Shape::value, pStrengths, Filter::most)) return kelStsRangeErr;
    filterEdges<Filter, Shape, direction>(p, step, pAlpha, pBeta, pThresholds, pStrengths);
    return kelStsNoErr;
}

} // namespace kelvara

#endif
