// rkconditions_test.cpp - tests of rkconditions.
