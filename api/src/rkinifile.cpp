// rkinifile.cpp - sections and keys in a file.

#include "rkinifile.h"
