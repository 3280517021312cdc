// rkhost_test.cpp - tests of rkhost.
