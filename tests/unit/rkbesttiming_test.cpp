// rkbesttiming_test.cpp - tests of rkbesttiming.
