// cavlcchroma.cpp - the exported analysis of chroma DC levels for the CAVLC coder of H.264.

#include "transform4x4.h"
#include "../common/checks.h"
#include "../common/samples.h"
#include "kelvc.h"

namespace kelvara {

// Positions in the order of coding: ITU-T H.264 8.5.4.
static const int scan2x2[4] = {0, 1, 2, 3};
static const int scan2x4[8] = {0, 2, 1, 4, 6, 3, 5, 7};

// What ITU-T H.264 9.2 codes of a block, from the last level to the first.
struct CodedLevels {
    // Levels in the order of coding.
    void add(int level, int zerosBefore) {
        runs[count] = static_cast<Kel8u>(zerosBefore);
        const bool isTrailing = others == 0 && ones < 3 && (level == 1 || level == -1);
        if (isTrailing) {
            ++ones;
            signs = 2 * signs + (level < 0 ? 1 : 0);
        } else {
            values[others++] = level;
        }
        ++count;
    }

    int count = 0, ones = 0, signs = 0, others = 0, zeros = 0;
    Kel32s values[8];
    Kel8u runs[8];
};

template <int N>
static CodedLevels codedLevels(const Words<N> &block, const int (&scan)[N]) {
    CodedLevels coded;
    int last = N - 1;
    while (last >= 0 && !block(scan[last])) --last;
    while (last >= 0) {
        int next = last - 1;
        while (next >= 0 && !block(scan[next])) --next;
        coded.add(block(scan[last]), last - next - 1);
        coded.zeros += last - next - 1;
        last = next;
    }
    return coded;
}

// levels, their analysis
template <int N, class T>
static KelStatus analyse(const T *pSrc, const int (&scan)[N], Kel8u *pTrailingOnes, Kel8u *pTrailingOneSigns,
                         Kel8u *pNumOutCoeffs, Kel8u *pTotalZeros, T *pLevels, Kel8u *pRuns) {
    if (anyNull(pSrc, pTrailingOnes, pTrailingOneSigns, pNumOutCoeffs, pTotalZeros, pLevels, pRuns))
        return kelStsNullPtrErr;
    const CodedLevels coded = codedLevels(Words<N>(pSrc), scan);
    *pTrailingOnes = static_cast<Kel8u>(coded.ones);
    *pTrailingOneSigns = static_cast<Kel8u>(coded.signs);
    *pNumOutCoeffs = static_cast<Kel8u>(coded.count);
    *pTotalZeros = static_cast<Kel8u>(coded.zeros);
    const Target<T> levels(pLevels, 0);
    for (int i = 0; i < coded.others; ++i) levels.set(0, i, coded.values[i]);
    std::copy_n(coded.runs, coded.count, pRuns);
    return kelStsNoErr;
}

} // namespace kelvara

using namespace kelvara;

KelStatus keliEncodeCoeffsCAVLCChromaDC2x2_H264_32s(const Kel32s *pSrc, Kel8u *pTrailingOnes,
                                                    Kel8u *pTrailingOneSigns, Kel8u *pNumOutCoeffs,
                                                    Kel8u *pTotalZeros, Kel32s *pLevels, Kel8u *pRuns) {
    return analyse(pSrc, scan2x2, pTrailingOnes, pTrailingOneSigns, pNumOutCoeffs, pTotalZeros, pLevels,
                   pRuns);
}

KelStatus keliEncodeCoeffsCAVLCChromaDC2x4_H264_16s(const Kel16s *pSrc, Kel8u *pTrailingOnes,
                                                    Kel8u *pTrailingOneSigns, Kel8u *pNumOutCoeffs,
                                                    Kel8u *pTotalZeros, Kel16s *pLevels, Kel8u *pRuns) {
    return analyse(pSrc, scan2x4, pTrailingOnes, pTrailingOneSigns, pNumOutCoeffs, pTotalZeros, pLevels,
                   pRuns);
}

KelStatus keliEncodeCoeffsCAVLCChromaDC2x4_H264_32s(const Kel32s *pSrc, Kel8u *pTrailingOnes,
                                                    Kel8u *pTrailingOneSigns, Kel8u *pNumOutCoeffs,
                                                    Kel8u *pTotalZeros, Kel32s *pLevels, Kel8u *pRuns) {
    return analyse(pSrc, scan2x4, pTrailingOnes, pTrailingOneSigns, pNumOutCoeffs, pTotalZeros, pLevels,
                   pRuns);
}
