// rkcpu_test.cpp - tests of rkcpu.
