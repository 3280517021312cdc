// rkconvert.cpp - conversions between text and numbers.

#include "rkstring.h"
