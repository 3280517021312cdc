// rkstream_test.cpp - tests of rkstream.
