// rkcstream_test.cpp - tests of rkcstream.
