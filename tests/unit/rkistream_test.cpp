// rkistream_test.cpp - tests of rkistream.
