// rkistream.cpp - where parameter values come from.

#include "rkistream.h"
