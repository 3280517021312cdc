// rkhost.cpp - names of the computer.

#include "rkhost.h"
