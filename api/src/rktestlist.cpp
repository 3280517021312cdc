// rktestlist.cpp - order, run and count of the tests.

#include "rktestlist.h"
