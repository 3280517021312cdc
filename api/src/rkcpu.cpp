// rkcpu.cpp - processor code, caches, features.

#include "rkcpu.h"
