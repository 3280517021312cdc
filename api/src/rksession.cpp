// rksession.cpp - the sequence of a run.

#include "rksession.h"
