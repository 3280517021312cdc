// rktool.cpp - the entries of the timing engine.

#include "rktool.h"
