// kmfunc.cpp - the parts of a function's name.

#include "km.h"
