// rkoption_test.cpp - tests of rkoption.
