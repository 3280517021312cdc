// rkresult.cpp - words and names of results.

#include "rkresult.h"
