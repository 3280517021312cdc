// rkticker_test.cpp - tests of the clock accumulator.

#include <gtest/gtest.h>

#include "rkticker.h"

namespace {

// Waits until the counter has gone on by so much at least.
void pass(unsigned long long clocks) {
    unsigned long long begin = kel_get_cpu_counter();
    while (kel_get_cpu_counter() - begin < clocks) {
    }
}

} // namespace

TEST(RkTicker, CounterHasItsHighHalfInTheUpperBits) {
    unsigned long long a = kel_get_cpu_counter();
    pass(1ull << 22);
    unsigned long long b = kel_get_cpu_counter();
    EXPECT_GE(b - a, 1ull << 22);
    EXPECT_LT(b - a, 1ull << 48) << "halves that are swapped would jump";
}

TEST(RkTicker, NewOneIsStoppedAndEmpty) {
    rkCpuTicker ticker;
    EXPECT_TRUE(ticker.m_stopped);
    EXPECT_TRUE(ticker.m_paused);
    EXPECT_EQ(ticker.m_startClocks, 0u);
    EXPECT_EQ(ticker.m_totalClocks, 0u);
    EXPECT_EQ(ticker.m_intervals, 0);
    EXPECT_EQ(ticker.clocks(), 0);
}

TEST(RkTicker, StartForgetsTheSumAndOpensAnInterval) {
    rkCpuTicker ticker;
    ticker.m_totalClocks = 12345;
    ticker.m_intervals = 3;
    unsigned long long before = kel_get_cpu_counter();
    ticker.start();
    EXPECT_FALSE(ticker.m_stopped);
    EXPECT_FALSE(ticker.m_paused);
    EXPECT_EQ(ticker.m_totalClocks, 0u);
    EXPECT_EQ(ticker.m_intervals, 0);
    EXPECT_GE(ticker.m_startClocks, before);
}

TEST(RkTicker, PauseAddsTheInterval) {
    rkCpuTicker ticker;
    ticker.start();
    pass(2000);
    ticker.pause();
    EXPECT_TRUE(ticker.m_paused);
    EXPECT_FALSE(ticker.m_stopped);
    EXPECT_EQ(ticker.m_intervals, 1);
    EXPECT_GE(ticker.m_totalClocks, 2000u);
}

TEST(RkTicker, PauseOfAPausedOneAddsNothing) {
    rkCpuTicker ticker;
    ticker.start();
    ticker.pause();
    unsigned long long total = ticker.m_totalClocks;
    pass(2000);
    ticker.pause();
    EXPECT_EQ(ticker.m_totalClocks, total);
    EXPECT_EQ(ticker.m_intervals, 1);
}

TEST(RkTicker, ResumeAfterAPauseGoesOnWithTheSum) {
    rkCpuTicker ticker;
    ticker.start();
    ticker.pause();
    unsigned long long total = ticker.m_totalClocks = 500000;
    ticker.resume();
    EXPECT_FALSE(ticker.m_paused);
    EXPECT_EQ(ticker.m_intervals, 1);
    pass(2000);
    ticker.pause();
    EXPECT_GE(ticker.m_totalClocks, total + 2000);
    EXPECT_EQ(ticker.m_intervals, 2);
}

TEST(RkTicker, TimeBetweenPauseAndResumeIsNotCounted) {
    rkCpuTicker ticker;
    ticker.start();
    ticker.pause();
    unsigned long long firstBegin = ticker.m_startClocks;
    pass(2000);
    ticker.resume();
    EXPECT_GE(ticker.m_startClocks - firstBegin, 2000u) << "the interval begins anew";
}

TEST(RkTicker, ResumeAfterAStopBeginsANewSum) {
    rkCpuTicker ticker;
    ticker.start();
    ticker.stop();
    ticker.m_totalClocks = 500000;
    ticker.resume();
    EXPECT_FALSE(ticker.m_stopped);
    EXPECT_FALSE(ticker.m_paused);
    EXPECT_EQ(ticker.m_totalClocks, 0u);
    EXPECT_EQ(ticker.m_intervals, 0);
}

TEST(RkTicker, ResumeOfANewOneBeginsASum) {
    rkCpuTicker ticker;
    ticker.resume();
    ticker.pause();
    ticker.resume();
    ticker.stop();
    EXPECT_EQ(ticker.m_intervals, 2);
    EXPECT_TRUE(ticker.m_stopped);
}

TEST(RkTicker, StopClosesTheOpenInterval) {
    rkCpuTicker ticker;
    ticker.start();
    pass(2000);
    ticker.stop();
    EXPECT_TRUE(ticker.m_stopped);
    EXPECT_TRUE(ticker.m_paused);
    EXPECT_EQ(ticker.m_intervals, 1);
    EXPECT_GE(ticker.clocks(), 2000);
}

TEST(RkTicker, ClocksAreTheSumTimesTheFactor) {
    rkCpuTicker ticker;
    ticker.m_totalClocks = 5000000000ull;
    EXPECT_EQ(rkCpuTicker::getClockFactor(), 1);
    EXPECT_EQ(ticker.clocks(), 5000000000ll);
}
