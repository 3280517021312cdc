// rknames.cpp - names of flags and enumerations.

#include "rkstring.h"
