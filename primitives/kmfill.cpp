// kmfill.cpp - conversion to element types and the random generator.

#include "km.h"
