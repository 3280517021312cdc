// kmvector.cpp - typed buffers of test data.

#include "km.h"
