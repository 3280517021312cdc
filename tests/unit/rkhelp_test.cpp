// rkhelp_test.cpp - tests of rkhelp.
