// rkpath.cpp - default directories and names of files.

#include "rksession.h"
