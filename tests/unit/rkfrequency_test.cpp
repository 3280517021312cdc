// rkfrequency_test.cpp - tests of the processor frequency and the system timer.

#include <gtest/gtest.h>

#include <errno.h>
#include <stdio.h>
#include <unistd.h>

#include "rkfrequency.h"
#include "rkpriority.h"
#include "rkticker.h"
#include "scriptedcpu.h"

namespace {

// The clock device stands for the rest of the test on a file of the test's choice.
class RkClockDevice : public testing::Test {
protected:
    RkClockDevice() : m_file(tmpfile()) { g_rtc.m_fd = fileno(m_file); }
    ~RkClockDevice() override {
        fclose(m_file);
        g_rtc.m_fd = -1;
        g_rtc.m_running = false;
    }

    void script(std::initializer_list<unsigned long long> counts) {
        for (unsigned long long count : counts) fwrite(&count, sizeof count, 1, m_file);
        rewind(m_file);
        g_rtc.m_running = true;
    }

    FILE *m_file;
    OSTimer timer;
};

} // namespace

// ---- nominal frequency --------------------------------------------------------

TEST(RkFrequency, KnowsThirtyEightNominalFrequencies) {
    EXPECT_EQ(numof_mhz_vals, 38);
    EXPECT_EQ(known_mhz[0], 60);
    EXPECT_EQ(known_mhz[37], 3060);
    for (int i = 1; i < numof_mhz_vals; ++i) EXPECT_LT(known_mhz[i - 1], known_mhz[i]);
    for (int i = 0; i < numof_mhz_vals; ++i) {
        EXPECT_EQ(nominalFreqMHz(static_cast<unsigned int>(known_mhz[i])),
                  static_cast<unsigned int>(known_mhz[i]));
    }
}

TEST(RkFrequency, SnapsToTheNominalFrequencyNextToIt) {
    EXPECT_EQ(nominalFreqMHz(2003), 2000u);
    EXPECT_EQ(nominalFreqMHz(1995), 2000u);
    EXPECT_EQ(nominalFreqMHz(2510), 2500u);
    EXPECT_EQ(nominalFreqMHz(2520), 2530u);
}

TEST(RkFrequency, StaysIfTheNextIsFar) {
    EXPECT_EQ(nominalFreqMHz(3200), 3200u);
    EXPECT_EQ(nominalFreqMHz(1600), 1600u);
    EXPECT_EQ(nominalFreqMHz(1550), 1550u);
}

TEST(RkFrequency, ThreePercentItselfAreFar) {
    EXPECT_EQ(nominalFreqMHz(3154), 3060u) << "94 of 3154 are 2.98 %";
    EXPECT_EQ(nominalFreqMHz(3155), 3155u) << "95 of 3155 are 3.01 %";
    EXPECT_EQ(nominalFreqMHz(1000), 1000u);
}

TEST(RkFrequency, TieKeepsTheEarlierRow) {
    EXPECT_EQ(nominalFreqMHz(2230), 2200u) << "30 from 2200 and from 2260";
    EXPECT_EQ(nominalFreqMHz(2630), 2600u) << "30 from 2600 and from 2660";
}

TEST(RkFrequency, FarAboveTheTableFallsToTheFirstRow) {
    EXPECT_EQ(nominalFreqMHz(4060), 4060u);
    EXPECT_EQ(nominalFreqMHz(33333), 33333u);
    EXPECT_EQ(nominalFreqMHz(33334), 60u);
    EXPECT_EQ(nominalFreqMHz(4294967295u), 60u);
}

TEST(RkFrequency, NothingMeasuredStaysNothing) {
    EXPECT_EQ(nominalFreqMHz(0), 0u);
}

// ---- measurement --------------------------------------------------------------

TEST(RkFrequency, ProcessorWithoutACounterHasNone) {
    ScriptedCpu cpu;
    EXPECT_EQ(estimateCpuFreqMHz(), 0u);
    rkCpuTicker::m_freqMHz = 0;
    EXPECT_EQ(rkCpuTicker::getFreq(), 0);
    EXPECT_EQ(rkCpuTicker::m_freqMHz, 0);
}

TEST(RkFrequency, MeasuredOnceAndKept) {
    rkCpuTicker::m_freqMHz = 777; // none of the nominal ones
    EXPECT_EQ(rkCpuTicker::getFreq(), 777);
    rkCpuTicker::m_freqMHz = 0;
    int measured = rkCpuTicker::getFreq();
    EXPECT_EQ(rkCpuTicker::m_freqMHz, measured);
    EXPECT_GE(measured, 0);
    EXPECT_LT(measured, 100000);
    EXPECT_FALSE(_bSavedPrio) << "the priority is back";
}

// ---- system timer -------------------------------------------------------------

TEST(RkOSTimer, NewOneIsZero) {
    OSTimer timer;
    EXPECT_EQ(timer.m_start, 0);
    EXPECT_EQ(timer.m_stop, 0);
    EXPECT_EQ(timer.m_freq, 0);
}

TEST(RkOSTimer, NoDeviceIsOpen) {
    EXPECT_EQ(g_rtc.m_fd, -1);
    EXPECT_FALSE(g_rtc.m_running);
    EXPECT_EQ(LinuxRTClock::INT_PER_SEC, 8192);
}

TEST(RkOSTimer, RunsOnTheProcessClockWithoutADevice) {
    OSTimer timer;
    long long start = timer.start();
    EXPECT_EQ(timer.m_start, start);
    while (timer.stop() == start) {
    }
    EXPECT_GT(timer.m_stop, timer.m_start);
    EXPECT_EQ(timer.getOSFreq(), 1000000);
    EXPECT_EQ(timer.m_freq, 1000000);
}

TEST(RkOSTimer, IntervalIsInSinglePrecision) {
    OSTimer timer;
    timer.m_start = 1000000;
    timer.m_stop = 3500000;
    EXPECT_EQ(timer.getSec(), 2.5f);
    EXPECT_EQ(timer.getUSec(), 2500000.0f);
    timer.m_start = 0;
    timer.m_stop = 16777217; // has no float of its own
    EXPECT_EQ(timer.getSec(), 16777216.0f / 1000000.0f);
}

TEST_F(RkClockDevice, IdleOneCountsZero) {
    timer.m_start = timer.m_stop = 99;
    EXPECT_EQ(timer.start(), 0);
    EXPECT_EQ(timer.stop(), 0);
    EXPECT_EQ(timer.getSec(), 0.0f);
}

TEST_F(RkClockDevice, CountsLieAboveTheLowByte) {
    script({0x1000ffull, 0x300000ull});
    EXPECT_EQ(timer.start(), 0x1000);
    EXPECT_EQ(timer.stop(), 0x3000);
    EXPECT_EQ(timer.getOSFreq(), 8192);
    EXPECT_EQ(timer.getSec(), 1.0f);
}

TEST_F(RkClockDevice, CountsAreUnsigned) {
    script({0xff00000000000000ull});
    EXPECT_EQ(timer.start(), 0xff000000000000ll);
}

using RkClockDeviceDeathTest = RkClockDevice;

TEST_F(RkClockDeviceDeathTest, FailedReadEndsTheProcessWithTheErrorNumber) {
    EXPECT_EXIT(
        {
            g_rtc.m_running = true;
            g_rtc.m_fd = 9999; // nobody opened it
            timer.start();
        },
        testing::ExitedWithCode(EBADF), "\n-- OSTimer. read: Reading of TRC data fails\n: ");
}
