// rotation.h - the parameter of the tests that turn a picture.

#ifndef RAKOVA_ROTATION_H
#define RAKOVA_ROTATION_H

#include "kmvc.h"

inline void addName(rkMapIterator<int> &parm, int value, char const *name) {
    parm[value] = name;
    parm.add(value);
}

inline void initRotation(rkMapIterator<int> &rotation) {
    rotation.init("rotation");
    addName(rotation, 0, "disable");
    addName(rotation, 1, "90ccw");
    addName(rotation, 2, "90cw");
    addName(rotation, 3, "180");
}

// Of the destination: a quarter turn exchanges width and height.
inline KeliSize turnedSize(KeliSize size, int rotation) {
    return rotation == 1 || rotation == 2 ? KeliSize{size.height, size.width} : size;
}

#endif
