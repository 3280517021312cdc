// rkcputables.cpp - tables of processors, features and cache descriptors.

#include "rkcpu.h"
