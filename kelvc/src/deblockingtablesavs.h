// deblockingtablesavs.h - blocks and filter arrays of AVS, as they follow each other in a stream.

#ifndef RAKOVA_DEBLOCKINGTABLESAVS_H
#define RAKOVA_DEBLOCKINGTABLESAVS_H

#include "deblockingdata.h"

// Of each record: alpha, beta, thresholds, strengths. The first alpha, beta and threshold are for the edge
// in front of the block.
namespace avs {

// clang-format off

inline constexpr DeblockingSets lumaArrays = {
    {
        {{15, 15}, {6, 6}, {1, 1}, {2, 2, 2, 2}},
        {{15, 15}, {6, 6}, {1, 1}, {2, 2, 2, 2}},
        {{15, 15}, {6, 6}, {1, 1}, {2, 2, 2, 2}},
        {{15, 15}, {6, 6}, {1, 1}, {2, 2, 2, 2}},
    },
    {
        {{45, 56}, {10, 11}, {4, 7}, {1, 1, 1, 1}},
        {{32, 40}, {9, 10}, {2, 3}, {1, 1, 1, 1}},
        {{45, 45}, {10, 10}, {4, 4}, {1, 1, 1, 1}},
        {{63, 71}, {12, 12}, {9, 9}, {1, 1, 1, 1}},
    },
    {
        {{22, 17}, {7, 6}, {2, 2}, {1, 0, 1, 1}},
        {{20, 17}, {7, 6}, {2, 2}, {0, 1, 1, 0}},
        {{17, 17}, {6, 6}, {2, 2}, {1, 1, 0, 0}},
        {{28, 28}, {8, 8}, {2, 2}, {1, 0, 0, 1}},
    },
    {
        {{0, 4}, {0, 2}, {0, 1}, {1, 1, 1, 1}},
        {{0, 4}, {0, 2}, {0, 1}, {1, 1, 1, 1}},
        {{0, 4}, {0, 2}, {0, 1}, {1, 0, 1, 1}},
        {{0, 4}, {0, 2}, {0, 1}, {1, 1, 1, 1}},
    },
};

// The chroma has that edge alone.
inline constexpr DeblockingSets chromaArrays = {
    {
        {{10}, {4}, {1}, {2, 2, 2, 2}},
        {{12}, {4}, {1}, {2, 2, 2, 2}},
        {{13}, {4}, {1}, {2, 2, 2, 2}},
        {{10}, {4}, {1}, {2, 2, 2, 2}},
    },
    {
        {{28}, {8}, {2}, {1, 1, 1, 1}},
        {{13}, {4}, {1}, {1, 1, 1, 1}},
        {{28}, {8}, {2}, {1, 1, 1, 1}},
        {{36}, {9}, {3}, {1, 1, 1, 1}},
    },
    {
        {{15}, {6}, {1}, {1, 0, 1, 1}},
        {{15}, {6}, {1}, {0, 1, 1, 0}},
        {{15}, {6}, {1}, {1, 1, 0, 0}},
        {{15}, {6}, {1}, {1, 0, 0, 1}},
    },
    {
        {{17}, {6}, {2}, {1, 1, 1, 1}},
        {{22}, {7}, {2}, {1, 1, 1, 1}},
        {{20}, {7}, {2}, {1, 0, 1, 1}},
        {{17}, {6}, {2}, {1, 1, 1, 1}},
    },
};

// clang-format on

inline constexpr RecordShape lumaShape = {20, 16, 2, 2, 4};
inline constexpr RecordShape chromaShape = {12, 8, 1, 1, 4};

inline constexpr auto LumaDeblockingData =
    makeDeblockingTable<lumaShape.bytes()>(lumaShape, {4, 1, {4, 8, 6, 2}}, lumaArrays);
inline constexpr auto ChromaDeblockingData =
    makeDeblockingTable<chromaShape.bytes()>(chromaShape, {4, 1, {3, 7, 5, 2}}, chromaArrays);

static_assert(lumaShape.bytes() == 330 && chromaShape.bytes() == 103);

} // namespace avs

#endif
