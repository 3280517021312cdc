// kmvector.cpp - typed buffers of test data.
