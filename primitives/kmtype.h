// kmtype.h - element types of test data, the arguments of a primitive, and the ways to fill a vector.

#ifndef RAKOVA_KMTYPE_H
#define RAKOVA_KMTYPE_H

#include "keltypes.h"

// Bit fields: size of a real component in bits (8, 16, 32, 64) and the flags below. In use are 8u 16u 32u 64u
// 8s 16s 32s 64s 32f 64f and the pairs 8sc 16sc 16uc 32sc 64sc 32fc 64fc; any other value is undefined:
// fills do nothing, reads leave their results, printouts are empty.
using kmType = int;

enum kmTypeBits {
    kmTypeSize = 255,
    kmTypeSigned = 256,
    kmTypeFloat = 512,
    kmTypeComplex = 1024 // an element is a pair of components: real, imaginary
};

enum kmArg : int { kmSrc = 1, kmSrc2 = 2, kmDst = 4, kmDst2 = 8 };

enum SetMode : int {
    SetDefault = 0, // 1.00001 for a floating type, 2 for others
    SetZero = 1,
    SetOne = 2,
    SetMax = 3,
    SetMin = 4,
    SetValue = 5,   // the constant of the two arguments
    SetRandom = 6,  // uniform between the two arguments
    SetSequence = 7 // steps between the two arguments
};

#endif
