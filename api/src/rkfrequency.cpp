// rkfrequency.cpp - the measurement of the processor frequency.

#include "rkfrequency.h"
