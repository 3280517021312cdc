// rkplaintypes.cpp - text forms of the library's plain types.

#include "rkplaintypes.h"

rkString &operator<<(rkString &text, KeliSize size) {
    return text << size.width << "x" << size.height;
}

// Reads a side of a size; a missing word counts as 0.
static bool readSide(int &side, bool present, rkString &word) {
    if (!present) {
        side = 0;
    } else {
        side << word;
    }
    return side > 0 && !word.failed();
}

KeliSize &operator<<(KeliSize &size, rkString &text) {
    rkString width, height;
    int words = text.parse(width, height, " {}()x,");
    bool widthGood = readSide(size.width, words >= 1, width);
    bool heightGood = readSide(size.height, words >= 2, height);
    text.m_failed = !(widthGood && heightGood);
    return size;
}
