// rkreportlist.cpp - the list of functions.

#include "rkreport.h"
