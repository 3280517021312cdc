// kmtest.cpp - the test of a library primitive.
