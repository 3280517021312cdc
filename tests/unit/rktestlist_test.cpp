// rktestlist_test.cpp - tests of rktestlist.
