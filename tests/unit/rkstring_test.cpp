// rkstring_test.cpp - tests of rkstring.
