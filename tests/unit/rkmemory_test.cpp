// rkmemory_test.cpp - tests of rkmemory.
