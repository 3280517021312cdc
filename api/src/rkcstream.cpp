// rkcstream.cpp - comma-separated tables.

#include "rkcstream.h"
