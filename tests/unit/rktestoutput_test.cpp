// rktestoutput_test.cpp - tests of rktestoutput.
