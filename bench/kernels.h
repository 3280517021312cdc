// kernels.h - functions of a known length for measuring the measurement.

#ifndef RAKOVA_BENCH_KERNELS_H
#define RAKOVA_BENCH_KERNELS_H

// Each returns the status 0. They stand in a file of their own, so that both sides of a comparison make the
// same call. Every multiplication waits for the one before, and the first for the last of the call before: a
// call cannot overlap with the next. The names tell the length in clocks, roughly: it goes with the
// ratio of the core's clock to the counter's.
int emptyKernel();
int kernel20();
int kernel200();
int kernel2000();

#endif
