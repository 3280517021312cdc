// rkreport.cpp - the blocks of the report.

#include "rkreport.h"
