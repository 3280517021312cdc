// sum.h - the primitive under test.

#ifndef SUM_H
#define SUM_H

enum { sumPlain = 0, sumAbsolute = 1 };

// Stores the sum of len samples, or of their absolute values. Returns 0; -1 for a len below 1.
int sum_16s32s(short const *src, int len, int *sum, int mode);

#endif
