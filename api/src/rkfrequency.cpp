// rkfrequency.cpp - the measurement of the processor frequency.

#include "rkfrequency.h"

#include <errno.h>
#include <limits.h>
#include <stdio.h>
#include <stdlib.h>
#include <time.h>
#include <unistd.h>

#include "rkcpuid.h"
#include "rkpriority.h"
#include "rkticker.h"

int rkCpuTicker::m_freqMHz = 0;

const int LinuxRTClock::INT_PER_SEC;
LinuxRTClock g_rtc;

const int known_mhz[] = {60,   66,   75,   90,   100,  120,  133,  150,  166,  185,  200,  220,  240,
                         266,  300,  333,  400,  450,  500,  530,  550,  600,  800,  1000, 1400, 1700,
                         1800, 1900, 2000, 2200, 2260, 2400, 2500, 2530, 2600, 2660, 2800, 3060};
const int numof_mhz_vals = sizeof known_mhz / sizeof known_mhz[0];

// ---- interval timer -----------------------------------------------------------

// The device counts in the upper 56 bits of what it gives.
static long long readDevice() {
    unsigned long long count = 0;
    if (read(g_rtc.m_fd, &count, sizeof count) == -1) {
        int error = errno;
        perror("\n-- OSTimer. read: Reading of TRC data fails\n");
        exit(error);
    }
    return static_cast<long long>(count >> 8);
}

void OSTimer::GetCounter(long long *count) {
    if (g_rtc.m_fd == -1) {
        *count = clock();
    } else {
        *count = g_rtc.m_running ? readDevice() : 0;
    }
}

long long OSTimer::start() {
    GetCounter(&m_start);
    return m_start;
}

long long OSTimer::stop() {
    GetCounter(&m_stop);
    return m_stop;
}

long long OSTimer::getOSFreq() {
    m_freq = g_rtc.m_fd == -1 ? 1000000 : LinuxRTClock::INT_PER_SEC;
    return m_freq;
}

float OSTimer::getSec() {
    return static_cast<float>(m_stop - m_start) / static_cast<float>(getOSFreq());
}

float OSTimer::getUSec() {
    return getSec() * 1000000.0f;
}

// ---- frequency ----------------------------------------------------------------

unsigned int nominalFreqMHz(unsigned int measured) {
    if (measured == 0) return 0;
    long long bestDistance = 1000;
    int bestRow = 0;
    for (int row = 0; row < numof_mhz_vals; ++row) {
        long long distance = llabs(static_cast<long long>(measured) - known_mhz[row]);
        if (distance < bestDistance) {
            bestDistance = distance;
            bestRow = row;
        }
    }
    bool near = static_cast<double>(bestDistance) / static_cast<double>(measured) < 0.03;
    return near ? static_cast<unsigned int>(known_mhz[bestRow]) : measured;
}

// time() has whole seconds, so this takes one to two of them, and it keeps the processor busy.
static void spinTwoSeconds() {
    time_t reference = time(nullptr);
    while (2.0 > difftime(time(nullptr), reference)) {
    }
}

static unsigned int megahertz(long long clocks, float microseconds) {
    if (!(microseconds > 0.0f)) return 0;
    float mhz = static_cast<float>(clocks) / microseconds + 0.5f;
    return mhz < static_cast<float>(INT_MAX) ? static_cast<unsigned int>(mhz) : 0;
}

unsigned int estimateCpuFreqMHz() {
    if (!kel_has_rdtsc()) return 0;
    OSTimer timer;
    rkCpuTicker ticker;
    rkSetPriority(1);
    timer.start();
    ticker.start();
    spinTwoSeconds();
    ticker.stop();
    timer.stop();
    rkResetPriority();
    return nominalFreqMHz(megahertz(ticker.clocks(), timer.getUSec()));
}

int rkCpuTicker::getFreq() {
    if (m_freqMHz == 0) m_freqMHz = static_cast<int>(estimateCpuFreqMHz());
    return m_freqMHz;
}
