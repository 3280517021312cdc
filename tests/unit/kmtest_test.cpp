// kmtest_test.cpp - tests of kmtest.
