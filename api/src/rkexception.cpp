// rkexception.cpp - hardware faults become exceptions.

#include "rkexception.h"
