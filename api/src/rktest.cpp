// rktest.cpp - the life cycle of a test.

#include "rktest.h"
