// rkinfotest_test.cpp - tests of rkinfotest.
