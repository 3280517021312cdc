// kmfunctypes.cpp - the types and channels that a function's name tells.

#include "km.h"
