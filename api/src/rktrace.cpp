// rktrace.cpp - the trace of steps.

#include "rktrace.h"
