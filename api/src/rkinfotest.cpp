// rkinfotest.cpp - the processor report.

#include "rkinfotest.h"
