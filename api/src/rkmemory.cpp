// rkmemory.cpp - tracked, aligned memory.

#include "rkmemory.h"
