// rkregister.cpp - registration of tests and hooks.

#include "rkregister.h"
