// rkcommand_test.cpp - tests of rkcommand.
