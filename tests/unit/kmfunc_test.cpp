// kmfunc_test.cpp - tests of kmfunc.
