// rkiterator_test.cpp - tests of rkiterator.
