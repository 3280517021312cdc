// rkkelenvironment.cpp - the core functions of the library.

#include "rkregister.h"
