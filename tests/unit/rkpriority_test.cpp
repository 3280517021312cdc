// rkpriority_test.cpp - tests of rkpriority.
