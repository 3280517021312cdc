// rkfrequency_test.cpp - tests of rkfrequency.
