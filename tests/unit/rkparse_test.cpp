// rkparse_test.cpp - tests of rkparse.
