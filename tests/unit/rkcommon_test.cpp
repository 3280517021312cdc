// rkcommon_test.cpp - tests of rkcommon.
