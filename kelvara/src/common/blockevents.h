// blockevents.h - blocks as runs and levels, and the order in which they are coded.

#ifndef KELVARA_BLOCKEVENTS_H
#define KELVARA_BLOCKEVENTS_H

#include "block8x8.h"
#include "scan.h"

namespace kelvara {

// `run` zeros and then a level other than 0; `last` is 1 for the last event of a block.
struct Event {
    int last;
    int run;
    int level;
};

// Besides the scans of scan.h: the coefficients already are, or stay, in the order of their codes.
constexpr int ScanNone = -1;

inline bool isScanOrNone(int scan) {
    return scan == ScanNone || isScan(scan);
}

struct ScanOrder {
    Kel8u at[64];
};

constexpr ScanOrder codedOrder() {
    ScanOrder order{};
    for (int i = 0; i < 64; ++i) order.at[i] = static_cast<Kel8u>(i);
    return order;
}

inline constexpr ScanOrder unscanned = codedOrder();

// The index in the block of each place of the code. REQUIRES isScanOrNone(scan).
inline const Kel8u *scanOrder(int scan) {
    return scan == ScanNone ? unscanned.at : scanOrders[scan];
}

inline bool isLevelCount(int countNonZero) {
    return countNonZero >= 0 && countNonZero <= 64;
}

struct BlockEvents {
    int count = 0;
    Event at[64];
};

// The events of the levels other than 0 from the place `first` on, at most countNonZero of them; the last one
// is marked.
inline BlockEvents someEventsOf(const Block8x8<Kel16s> &block, const Kel8u *order, int first,
                                int countNonZero) {
    BlockEvents events;
    int run = 0;
    for (int place = first; place < 64 && events.count < countNonZero; ++place, ++run) {
        const int level = block.at[order[place]];
        if (level == 0) continue;
        events.at[events.count++] = {0, run, level};
        run = -1;
    }
    if (events.count > 0) events.at[events.count - 1].last = 1;
    return events;
}

inline bool levelsWithin(const BlockEvents &events, int low, int high) {
    for (int i = 0; i < events.count; ++i) {
        if (events.at[i].level < low || events.at[i].level > high) return false;
    }
    return true;
}

// Puts levels to their places, run by run.
class BlockFiller {
public:
    BlockFiller(Block8x8<Kel16s> &block, const Kel8u *order, int first)
        : m_block(block), m_order(order), m_place(first - 1) {}

    // False, and nothing is put, if that leads out of the block.
    bool put(int run, int level) {
        if (run > 62 - m_place) return false;
        m_place += run + 1;
        m_block.at[m_order[m_place]] = static_cast<Kel16s>(level);
        return true;
    }
    int place() const { return m_place; } // of the last level; first - 1 without one

private:
    Block8x8<Kel16s> &m_block;
    const Kel8u *m_order;
    int m_place;
};

} // namespace kelvara

#endif
