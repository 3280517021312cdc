// rksession_test.cpp - tests of rksession.
