// rkparameter_test.cpp - tests of rkparameter.
