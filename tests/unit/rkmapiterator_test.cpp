// rkmapiterator_test.cpp - tests of rkmapiterator.
