// blockdiffspies.h - stands between the suites of block differences and the library, and looks at every call.

#ifndef RAKOVA_TESTS_BLOCKDIFFSPIES_H
#define RAKOVA_TESTS_BLOCKDIFFSPIES_H

#include <string>
#include <vector>

// A call as the suite made it. The spy poisons the destination, hands the call on to the library, and
// compares what was written with a plain model. It fails the running test for a wrong value, for a status
// other than 0 and for a block that does not lie in tracked memory.
struct SpiedCall {
    std::string function;
    int srcStep, refStep;
    int last;           // the code of the half-sample position, the number of positions, the edge count
    int edgeDifference; // of the edge test
    bool diff;          // the differences are asked for
    int srcRoom;        // bytes from the source to the end of its tracked block
    int refRoom;
    int dstRoom;      // 0 for a destination that is no tracked block
    bool constantSrc; // every byte of the source block is the same
    int firstSrc;     // its first sample
};

extern std::vector<SpiedCall> g_spied;

#endif
