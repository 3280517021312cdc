// kmfunc.cpp - the grammar of function names.
