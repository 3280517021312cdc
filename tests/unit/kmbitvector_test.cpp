// kmbitvector_test.cpp - tests of kmbitvector.
