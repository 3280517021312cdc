// kmvector_test.cpp - tests of kmvector.
