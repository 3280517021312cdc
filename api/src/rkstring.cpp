// rkstring.cpp - the one string class.

#include "rkstring.h"
