// rktestloop.cpp - the walk over the parameter sets of a test.

#include "rktest.h"
