// dvmodel.h - a compressed segment of DV read bit by bit, by the text of the decoder's declaration.

#ifndef RAKOVA_TESTS_DVMODEL_H
#define RAKOVA_TESTS_DVMODEL_H

#include <array>

#include "dvcodes.h"
#include "dvformat.h"

namespace dv {

struct ModelBlock {
    Block levels = {}; // raster order
    int mode = 0, classNumber = 0, quantiser = 0;
    int count = 0; // places up to the last level other than 0
    bool ended = false, broken = false;

    unsigned int params() const;
};

using ModelBlocks = std::array<ModelBlock, blocks>;

ModelBlocks decodeByModel(unsigned char const *segment);

} // namespace dv

#endif
