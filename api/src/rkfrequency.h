// rkfrequency.h - the one-time measurement of the processor frequency.

#ifndef RAKOVA_RKFREQUENCY_H
#define RAKOVA_RKFREQUENCY_H

// A real-time clock device. Nothing opens one, so that OSTimer runs on clock().
class LinuxRTClock {
public:
    static const int INT_PER_SEC = 8192;
    int m_fd = -1;
    bool m_running = false; // its interrupts have been started
};

extern LinuxRTClock g_rtc;

// An interval on the operating system's own clock.
class OSTimer {
public:
    long long start();
    long long stop();
    long long getOSFreq(); // counts per second
    float getSec();
    float getUSec();
    void GetCounter(long long *count);

    long long m_start = 0;
    long long m_stop = 0;
    long long m_freq = 0;
};

extern const int numof_mhz_vals;
extern const int known_mhz[]; // nominal frequencies

// Measured MHz, or the nominal frequency next to it if that is within 3 percent.
unsigned int nominalFreqMHz(unsigned int measured);
unsigned int estimateCpuFreqMHz(); // one to two seconds; 0 without a time-stamp counter

#endif
