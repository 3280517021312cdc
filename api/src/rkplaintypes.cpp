// rkplaintypes.cpp - text form of a size.

#include "rkplaintypes.h"
