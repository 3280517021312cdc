// rkpath_test.cpp - tests of rkpath.
