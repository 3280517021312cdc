// rktimingloops.cpp - measuring runs of a function.

#include "rktool.h"
