// rkstream.cpp - files and the console log.

#include "rkstream.h"
