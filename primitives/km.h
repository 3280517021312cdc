// km.h - all of the layer for tests of library primitives, and the framework under it.

#ifndef RAKOVA_KM_H
#define RAKOVA_KM_H

#include "rk.h"

#include "kmbitvector.h"
#include "kmbmp.h"
#include "kmfill.h"
#include "kmfunc.h"
#include "kmimage.h"
#include "kmmeasure.h"
#include "kmplaintypes.h"
#include "kmreg.h"
#include "kmscale.h"
#include "kmtest.h"
#include "kmtype.h"
#include "kmvector.h"

#endif
