// rkticker.h - adds up intervals of processor clocks.

#ifndef RAKOVA_RKTICKER_H
#define RAKOVA_RKTICKER_H

// The processor's time-stamp counter, without a serialising instruction. The compiler moves no
// memory access across it.
inline unsigned long long kel_get_cpu_counter() {
    unsigned int low, high;
    __asm__ volatile("rdtsc" : "=a"(low), "=d"(high) : : "memory");
    return (static_cast<unsigned long long>(high) << 32) | low;
}

// The accumulator inside every measuring function. All operations are inline and touch nothing but the object
// and the counter, so that what lies between start and stop is the caller's code alone. Lives on the
// measuring function's stack.
class rkCpuTicker {
public:
    // Opens the first interval. The counter is read last.
    void start() {
        m_totalClocks = 0;
        m_intervals = 0;
        m_stopped = m_paused = false;
        m_startClocks = kel_get_cpu_counter();
    }
    // Closes the open interval, if any. The counter is read first.
    void pause() {
        unsigned long long now = kel_get_cpu_counter();
        if (m_paused) return;
        m_totalClocks += now - m_startClocks;
        m_paused = true;
        ++m_intervals;
    }
    // Opens a further interval; after a stop a new sum begins. The counter is read last.
    void resume() {
        if (m_stopped) {
            m_totalClocks = 0;
            m_intervals = 0;
            m_stopped = false;
        }
        m_paused = false;
        m_startClocks = kel_get_cpu_counter();
    }
    void stop() {
        pause();
        m_stopped = true;
    }
    long long clocks() const { return getClockFactor() * static_cast<long long>(m_totalClocks); }

    // Processor frequency in MHz, measured once at the first call (one to two seconds);
    // 0 on a processor without a counter.
    static int getFreq();
    static int getClockFactor() { return 1; } // processor clocks for each count of the counter
    static int m_freqMHz;                     // 0: not yet measured

    bool m_stopped = true;                // the sum is final; resume starts a new one
    bool m_paused = true;                 // no interval is open
    unsigned long long m_startClocks = 0; // counter at the start of the open interval
    unsigned long long m_totalClocks = 0; // sum of the closed intervals
    int m_intervals = 0;                  // closed intervals
};

#endif
