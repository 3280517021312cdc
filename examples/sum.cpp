// sum.cpp - the primitive under test. In a file of its own, so that what is measured is the call.

#include "sum.h"

#include <stdlib.h>

int sum_16s32s(short const *src, int len, int *sum, int mode) {
    if (len < 1) return -1;
    int total = 0;
    for (int i = 0; i < len; ++i) total += mode == sumAbsolute ? abs(src[i]) : src[i];
    *sum = total;
    return 0;
}
