// rkconditions.cpp - the conditions of -f and -t.

#include "rkconditions.h"
