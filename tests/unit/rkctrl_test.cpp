// rkctrl_test.cpp - tests of rkctrl.
