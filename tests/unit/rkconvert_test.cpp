// rkconvert_test.cpp - tests of rkconvert.
