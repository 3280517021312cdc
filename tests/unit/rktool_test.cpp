// rktool_test.cpp - tests of rktool.
