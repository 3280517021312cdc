// rktestloop_test.cpp - tests of rktestloop.
