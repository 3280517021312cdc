// rkfpu_test.cpp - tests of rkfpu.
