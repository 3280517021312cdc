// rkhelp.cpp - the help.

#include "rksession.h"
