// rkcommon.cpp - questions about what holds for all tests.

#include "rkcommon.h"
