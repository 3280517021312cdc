// rkcache.cpp - data in and out of the cache.

#include "rkcache.h"
