// kmprint.cpp - texts of test data.

#include "km.h"
