// rkcpuid_test.cpp - tests of rkcpuid.
