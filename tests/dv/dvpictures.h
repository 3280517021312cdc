// dvpictures.h - the pictures behind the compressed segments of the suite.

#ifndef RAKOVA_TESTS_DVPICTURES_H
#define RAKOVA_TESTS_DVPICTURES_H

#include "dvencoder.h"

namespace dv {

// Every sample by itself, as strong as a segment holds.
Picture whiteNoise();

// Five macroblocks of 16x16 from all over an interlaced picture of 4:2:0: sky, the ridge of a hill, leaves, a
// trunk that passes by, and a path.
Picture nature();

// The samples of both: name of the array, comment, picture.
struct SuitePicture {
    char const *name;
    char const *comment;
    Picture (*make)();
};

inline const SuitePicture suitePictures[] = {{"white_noise_table", "White noise.", whiteNoise},
                                             {"nature_table", "A landscape.", nature}};

} // namespace dv

#endif
