// deblocking.cpp - the pool of blocks that the tests of deblocking filters measure on.

#include <string.h>

#include "deblocking.h"

void DeblockingPool::start(rkTest &test, bool verticalEdge) {
    if (verticalEdge) test.m_parms.push_back(&cache_align);
    test.m_parms.push_back(&deb_type);
    if (test.m_tool.getMethodAuto()) test.m_tool.setMethodStat(deblockingBlocks - 1, 0);
    if (verticalEdge) cache_align.init("cache_aling_iterator", 0, 1, 1, StepPlus);
    deb_type.init("deblocking_type", 0, deblockingSets - 1, 1, StepPlus);
    src_offset = alpha_offset = beta_offset = thr_offset = str_offset = 0;
}

bool DeblockingPool::create(DeblockingLayout const &layout) {
    const int shift = rkGetVectorShift();
    return pSrcDst.createVectorExt(layout.length, shift, SetDefault, 0, 0) &&
           pAlpha.createVectorExt(2 * deblockingBlocks, shift, SetDefault, 0, 0) &&
           pBeta.createVectorExt(2 * deblockingBlocks, shift, SetDefault, 0, 0) &&
           pThresholds.createVectorExt(layout.thresholds * deblockingBlocks, shift, SetDefault, 0, 0) &&
           pStrengths.createVectorExt(16 * deblockingBlocks, shift, SetDefault, 0, 0);
}

void DeblockingPool::copyBlock(Kel8u const *record, DeblockingLayout const &layout, int i) {
    Kel8u *to = pSrcDst.p8u + i * layout.block + layout.first + layout.shift * aligned();
    for (int k = 0; k < layout.rows; ++k) {
        for (int j = 0; j < layout.cols; ++j) {
            for (int n = 0; n < layout.together; ++n)
                to[k * layout.row + j * layout.column + n] = record[k * layout.pitch + j + n];
        }
    }
}

// The arrays are copied in the pool's sizes. Where a record has shorter ones, what follows them comes along:
// no filter reads it.
void DeblockingPool::fillFrom(Kel8u const *records, RecordShape const &shape,
                              DeblockingLayout const &layout) {
    for (int i = 0; i < layout.blocks; ++i) {
        Kel8u const *record = records + i % deblockingRecords * shape.bytes();
        copyBlock(record, layout, i);
        if (i >= deblockingBlocks) continue;
        memcpy(pAlpha.p8u + 2 * i, record + shape.alphaAt(), 2);
        memcpy(pBeta.p8u + 2 * i, record + shape.betaAt(), 2);
        memcpy(pThresholds.p8u + layout.thresholds * i, record + shape.thresholdsAt(), layout.thresholds);
        memcpy(pStrengths.p8u + 16 * i, record + shape.strengthsAt(), 16);
    }
}

KeliDeblockingInfo DeblockingPool::info(int block, int distance, int step, int thresholdBytes) {
    KeliDeblockingInfo info;
    info.pSrcDst = samples(block, distance);
    info.srcDstStep = step;
    info.pAlpha = alpha();
    info.pBeta = beta();
    info.pThresholds = thresholds(thresholdBytes);
    info.pStrengths = strengths();
    return info;
}
