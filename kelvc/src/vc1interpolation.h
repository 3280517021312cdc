// vc1interpolation.h - what the tests of VC-1 interpolation share.

#ifndef RAKOVA_VC1INTERPOLATION_H
#define RAKOVA_VC1INTERPOLATION_H

#include "vc1test.h"

static const KeliSize blkSize[] = {{16, 16}, {16, 8}, {8, 16}, {8, 8}, {8, 4}, {4, 8}, {4, 4}};

// The block lies in a new place for each set of parameters.
class VC1InterpolationTest : public VC1Test {
public:
    using VC1Test::VC1Test;

protected:
    // The parameters that all have. The first one is an index of blkSize, shown as the size.
    void start(rkMapIterator<int> &size, rkMapIterator<int> &dx, rkMapIterator<int> &dy) {
        m_pairs = m_func.find("C2R") >= 0;
        m_sets = 0;
        addSizes(size);
        addParameter(dx, "dx", {0, 1, 2, 3});
        addParameter(dy, "dy", {0, 1, 2, 3});
        makeAutoStatistic(256);
    }
    // Bytes from the start of the buffer to the block of the next set. A user's list of sets may be longer
    // than any buffer, and then its blocks start over.
    int nextPlace(int first) { return first + 16 * (m_sets++ % mostPlaces); }

    bool m_pairs = false; // of two interleaved colours

private:
    static const int mostPlaces = 65536;

    void addSizes(rkMapIterator<int> &size) {
        m_parms.push_back(&size);
        size.init("blockSizeIndex");
        if (m_pairs) {
            for (int index : {3, 4, 6}) addSize(size, index);
        } else if (m_func.find("Bilinear") >= 0) {
            for (int index : {0, 3, 4, 6}) addSize(size, index);
        } else {
            for (int index : {0, 1, 3}) addSize(size, index);
        }
    }
    static void addSize(rkMapIterator<int> &size, int index) {
        size[index] = rkString("blockSize=") + rkValueToString(blkSize[index]);
        size.add(index);
    }

    int m_sets = 0; // made in this run
};

#endif
