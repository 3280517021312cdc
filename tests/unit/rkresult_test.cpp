// rkresult_test.cpp - tests of rkresult.
