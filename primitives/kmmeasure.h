// kmmeasure.h - the two measuring loops that every test of a library function has.

#ifndef RAKOVA_KMMEASURE_H
#define RAKOVA_KMMEASURE_H

#include "rkticker.h"

#include "kmtest.h"

#define KM_INLINE inline __attribute__((always_inline))

// For a function that does not consume its input.
KM_INLINE int kmNoReset() {
    return 0;
}

// count calls in one interval, the loop's own cost with them. The call in front of it warms the caches. The
// status of the last call counts, and an error does not end the loop.
template <int (*Call)(), int (*Reset)()>
KM_INLINE rkResult kmTimLoop(int count, long long *clocks, char const *name) {
    Reset();
    int status = Call();
    rkCpuTicker ticker;
    ticker.start();
    for (; count > 0; --count) {
        Reset();
        status = Call();
    }
    ticker.stop();
    *clocks = ticker.clocks();
    return kmTest::checkStatus(status, name);
}

// Single calls, an interval each, until there are *count of them and *clocks clocks; returns both as they are
// then. Pass -1 warms the caches: its interval is dropped. The last status other than 0 counts, and an error
// ends the loop.
template <int (*Call)(), int (*Reset)()>
KM_INLINE rkResult kmTimStat(int *count, long long *clocks, char const *name) {
    rkCpuTicker ticker;
    int lastStatus = 0;
    int i = -1;
    for (;; ++i) {
        if (i == 0) ticker.start();
        if (i >= *count && ticker.clocks() >= *clocks) break;
        Reset();
        ticker.resume();
        int status = Call();
        ticker.pause();
        if (status != 0) lastStatus = status;
        if (status < 0) break;
    }
    *count = i;
    *clocks = ticker.clocks();
    return kmTest::checkStatus(lastStatus, name);
}

#endif
