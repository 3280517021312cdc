// rkoption.cpp - what the keys say and do.

#include "rkoption.h"
