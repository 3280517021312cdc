// rkregister_test.cpp - tests of rkregister.
