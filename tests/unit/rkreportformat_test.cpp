// rkreportformat_test.cpp - tests of rkreportformat.
