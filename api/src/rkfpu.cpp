// rkfpu.cpp - floating-point and SIMD registers.

#include "rkfpu.h"
