// rkinifile_test.cpp - tests of rkinifile.
