// rkexception_test.cpp - tests of rkexception.
