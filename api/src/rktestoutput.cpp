// rktestoutput.cpp - the lines of output of a test.

#include "rktest.h"
