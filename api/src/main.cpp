// main.cpp - the program.

#include "rk.h"
