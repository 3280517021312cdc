// mpeg4codes.h - the parameters of the tests of MPEG-4 bit streams.

#ifndef RAKOVA_MPEG4CODES_H
#define RAKOVA_MPEG4CODES_H

#include "kmvc.h"

// How many coefficients of a block are not 0.
static const int mpeg4Counts[] = {4, 8, 16, 32, 64};

inline void initCounts(rkIterator<int> &countNonZero) {
    countNonZero.init("countNonZero");
    for (int count : mpeg4Counts) countNonZero.add(count);
}

inline void addNamed(rkMapIterator<int> &parm, int value, char const *name) {
    parm[value] = name;
    parm.add(value);
}

// Variable-length codes and reversible ones, or the latter alone.
inline void initCodes(rkMapIterator<int> &rvlcFlag, bool reversibleOnly) {
    rvlcFlag.init("rvlcFlag");
    if (!reversibleOnly) addNamed(rvlcFlag, 0, "vlc");
    addNamed(rvlcFlag, 1, "rvlc");
}

// The order of the codes, and the three scans unless that is all.
inline void initScans(rkMapIterator<int> &scan, bool noneOnly) {
    scan.init("scan");
    addNamed(scan, -1, "none");
    if (noneOnly) return;
    addNamed(scan, 0, "zigzag");
    addNamed(scan, 2, "horizontal");
    addNamed(scan, 1, "vertical");
}

#endif
