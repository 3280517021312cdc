// rkobject.cpp - the two markers of owners of memory.

#include "rkobject.h"
