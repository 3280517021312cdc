// rkcommand.cpp - the keys of the command line.

#include "rkcommand.h"
