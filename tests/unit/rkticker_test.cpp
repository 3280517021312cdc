// rkticker_test.cpp - tests of rkticker.
