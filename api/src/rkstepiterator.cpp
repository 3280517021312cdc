// rkstepiterator.cpp - stepped families of values.

#include "rkstepiterator.h"
