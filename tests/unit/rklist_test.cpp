// rklist_test.cpp - tests of rklist.
