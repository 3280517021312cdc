// smallcache.cpp - a cache of a known, small size, so that a run is quick and the same on every machine.

#include "rkcache.h"
#include "rkticker.h"

static unsigned int smallCache() {
    return 65536;
}

static bool presetMachine() {
    rkCpuTicker::m_freqMHz = 1000; // nothing to measure
    rkCacheIterator::m_cacheSource = smallCache;
    return true;
}

static const bool machine = presetMachine();
