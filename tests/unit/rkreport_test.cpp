// rkreport_test.cpp - tests of rkreport.
