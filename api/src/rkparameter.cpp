// rkparameter.cpp - reading and writing of a parameter.

#include "rkparameter.h"
