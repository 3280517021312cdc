// macroblockmodel.h - H.264 macroblocks from their coefficients, by the models of prediction and residual.

#ifndef KELVARA_MACROBLOCKMODEL_H
#define KELVARA_MACROBLOCKMODEL_H

#include "intramodel.h"
#include "modelplane.h"
#include "residualmodel.h"

// The coefficients as they stand in memory, and how many have been used up.
struct ModelCoeffs {
    Numbers take(int count, Kel32u cbp, int bit) {
        if (!(cbp & (1u << bit))) return Numbers(static_cast<size_t>(count), 0);
        Numbers block(all.begin() + used, all.begin() + used + count);
        used += count;
        return block;
    }

    std::vector<Kel16s> all;
    int used = 0;
};

// 6.4.3 and 6.4.5: the place of block k of n x n
inline int blockX(int n, int k) {
    return n == 8 ? k % 2 * 8 : k / 4 % 2 * 8 + k % 2 * 4;
}
inline int blockY(int n, int k) {
    return n == 8 ? k / 2 * 8 : k / 8 * 8 + k % 4 / 2 * 4;
}

inline int blockAt(int n, int x, int y) {
    for (int k = 0; k < 256 / (n * n); ++k) {
        if (x >= blockX(n, k) && x < blockX(n, k) + n && y >= blockY(n, k) && y < blockY(n, k) + n) return k;
    }
    return -1;
}

// Table 6-3: may block k use the sample at (x, y) of its macroblock? bits are those of intramodel.h.
inline bool mayUse(int n, int k, int x, int y, int bits) {
    if (y < 0) return (bits & (x < 0 ? hasCorner : x < 16 ? hasUpper : hasUpperRight)) != 0;
    if (x < 0) return (bits & (y < 8 ? hasLeftTop : hasLeftBottom)) != 0;
    return x < 16 && blockAt(n, x, y) < k;
}

inline Neighbours neighboursOfBlock(const ModelPlane &plane, int n, int k, int bits) {
    const int x0 = blockX(n, k), y0 = blockY(n, k);
    Neighbours p;
    for (int i = -1; i < 2 * n; ++i) {
        if (mayUse(n, k, x0 + i, y0 - 1, bits)) p.set(i, -1, plane.at(x0 + i, y0 - 1));
        if (i >= 0 && i < n && mayUse(n, k, x0 - 1, y0 + i, bits)) p.set(-1, i, plane.at(x0 - 1, y0 + i));
    }
    return p;
}

inline bool allModesAllowed(const ModelPlane &plane, int n, const Kel32s *modes, int bits) {
    for (int k = 0; k < 256 / (n * n); ++k) {
        if (!blockModeAllowed(neighboursOfBlock(plane, n, k, bits), n, modes[k])) return false;
    }
    return true;
}

// ---- luma --------------------------------------------------------------------------------

inline void modelIntraBlocks(ModelPlane &plane, ModelCoeffs &coeffs, int n, const Kel32s *modes, Kel32u cbp,
                             int bits, const ModelScaling &s) {
    for (int k = 0; k < 256 / (n * n); ++k) {
        Neighbours p = withUpperRight(neighboursOfBlock(plane, n, k, bits), n);
        if (n == 8) p = filtered8x8(p);
        Numbers r = residualOf(n, coeffs.take(n * n, cbp, 1 + k), s, nullptr);
        if (s.bypass) addUp(n, r, modes[k] == 0, modes[k] == 1);
        for (int i = 0; i < n * n; ++i) {
            const int x = i % n, y = i / n;
            plane.set(blockX(n, k) + x, blockY(n, k) + y, blockSample(p, n, modes[k], x, y) + r[i]);
        }
    }
}

inline void modelInterBlocks(ModelPlane &plane, ModelCoeffs &coeffs, int n, Kel32u cbp,
                             const ModelScaling &s) {
    for (int k = 0; k < 256 / (n * n); ++k) {
        const Numbers r = residualOf(n, coeffs.take(n * n, cbp, 1 + k), s, nullptr);
        for (int i = 0; i < n * n; ++i) {
            const int x = blockX(n, k) + i % n, y = blockY(n, k) + i / n;
            plane.set(x, y, plane.at(x, y) + r[i]);
        }
    }
}

inline void modelWhole(ModelPlane &plane, ModelCoeffs &coeffs, int mode, Kel32u cbp, int bits,
                       const ModelScaling &s) {
    const Neighbours p = neighboursBy(bits, 16, plane.macroblock(), plane.step);
    const Numbers dc = scaledLumaDC(coeffs.take(16, cbp, 0), s);
    Numbers all(256);
    for (int k = 0; k < 16; ++k) {
        const int x = blockX(4, k), y = blockY(4, k);
        const Numbers r = residualOf(4, coeffs.take(16, cbp, 1 + k), s, &dc[y / 4 * 4 + x / 4]);
        for (int i = 0; i < 16; ++i) all[16 * (y + i / 4) + x + i % 4] = r[i];
    }
    if (s.bypass) addUp(16, all, mode == 0, mode == 1);
    for (int i = 0; i < 256; ++i) plane.set(i % 16, i / 16, lumaSample(p, mode, i % 16, i / 16) + all[i]);
}

// ---- chroma ------------------------------------------------------------------------------

// The residuals of U and V.
inline void modelChroma(ModelCoeffs &coeffs, Kel32u cbp, const ModelScaling (&s)[2], Numbers (&r)[2]) {
    Numbers dc[2];
    for (int c = 0; c < 2; ++c) dc[c] = scaledChromaDC(coeffs.take(4, cbp, c), s[c]);
    for (int c = 0; c < 2; ++c) {
        r[c].assign(64, 0);
        for (int k = 0; k < 4; ++k) {
            const Numbers block = residualOf(4, coeffs.take(16, cbp, 2 + 4 * c + k), s[c], &dc[c][k]);
            for (int i = 0; i < 16; ++i) r[c][8 * (k / 2 * 4 + i / 4) + k % 2 * 4 + i % 4] = block[i];
        }
    }
}

// mode -1: the plane holds the prediction.
inline void modelChromaPlane(ModelPlane &plane, Numbers r, int mode, int bits, bool bypass) {
    const Neighbours p = neighboursBy(bits, 8, plane.macroblock(), plane.step);
    if (bypass) addUp(8, r, mode == 2, mode == 1);
    for (int i = 0; i < 64; ++i) {
        const int x = i % 8, y = i / 8;
        plane.set(x, y, (mode < 0 ? plane.at(x, y) : chromaSample(p, mode, x, y)) + r[i]);
    }
}

#endif
