// kmtest.cpp - the test of a library primitive.

#include "km.h"
