// rkstepiterator_test.cpp - tests of rkstepiterator.
