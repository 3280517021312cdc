// rkcpuid.cpp - the CPUID instruction.

#include "rkcpuid.h"
