// rknames_test.cpp - tests of rknames.
