// rktest_test.cpp - tests of rktest.
