// rkbesttiming.cpp - the search for a loop count that gives stable clocks.

#include "rktool.h"
