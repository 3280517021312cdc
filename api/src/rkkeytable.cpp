// rkkeytable.cpp - the rows of the key table.

#include "rksession.h"
