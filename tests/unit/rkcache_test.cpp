// rkcache_test.cpp - tests of rkcache.
