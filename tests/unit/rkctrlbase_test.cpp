// rkctrlbase_test.cpp - tests of rkctrlbase.
