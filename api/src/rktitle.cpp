// rktitle.cpp - title rows of the tables.

#include "rksession.h"
