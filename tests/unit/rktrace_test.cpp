// rktrace_test.cpp - tests of rktrace.
