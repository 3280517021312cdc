// blockcoding.cpp - how blocks of levels are written and read, event by event.

#include "blockcoding.h"

#include "codes.h"
#include "eventcodes.h"
#include "reversiblecodes.h"

namespace kelvara {

using IntraVlc = VlcEvents<vlcIntra>;
using InterVlc = VlcEvents<interEventCodes>;
using IntraRvlc = RvlcEvents<rvlcIntra>;
using InterRvlc = RvlcEvents<rvlcInter>;

template <class Codes>
static void write(BitWriter &writer, const BlockEvents &events) {
    for (int i = 0; i < events.count; ++i) Codes::write(writer, events.at[i]);
}

void writeBlock(BitWriter &writer, BlockCodes codes, const BlockEvents &events) {
    if (codes.reversible) {
        codes.intra ? write<IntraRvlc>(writer, events) : write<InterRvlc>(writer, events);
    } else {
        codes.intra ? write<IntraVlc>(writer, events) : write<InterVlc>(writer, events);
    }
}

// Each event takes a place, so that the block ends the loop at the latest.
template <class Codes>
static bool read(BitReader &reader, BlockLayout layout, Block8x8<Kel16s> &block, int &last) {
    BlockFiller filler(block, layout.order, layout.first);
    Event e{};
    do {
        if (!Codes::read(reader, e) || !filler.put(e.run, e.level)) return false;
    } while (!e.last);
    last = filler.place();
    return true;
}

bool readBlock(BitReader &reader, BlockCodes codes, BlockLayout layout, Block8x8<Kel16s> &block, int &last) {
    if (codes.reversible) {
        return codes.intra ? read<IntraRvlc>(reader, layout, block, last)
                           : read<InterRvlc>(reader, layout, block, last);
    }
    return codes.intra ? read<IntraVlc>(reader, layout, block, last)
                       : read<InterVlc>(reader, layout, block, last);
}

// The events from the last to the first. False if there is none, or more than fit into `places`.
template <class Codes>
static bool readEventsBackwards(BackwardBitReader &reader, int places, BlockEvents &events) {
    Event e{};
    if (!Codes::read(reader, e) || !e.last) return false;
    for (;;) {
        places -= e.run + 1;
        if (places < 0) return false;
        events.at[events.count++] = e;
        if (places == 0) return true;
        BackwardBitReader ahead = reader;
        if (!Codes::read(ahead, e)) return false;
        if (e.last) return true;
        reader = ahead;
    }
}

bool readBlockBackwards(BackwardBitReader &reader, bool intra, BlockLayout layout, Block8x8<Kel16s> &block,
                        int &last) {
    BlockEvents events;
    const int places = 64 - layout.first;
    if (intra ? !readEventsBackwards<IntraRvlc>(reader, places, events)
              : !readEventsBackwards<InterRvlc>(reader, places, events)) {
        return false;
    }
    BlockFiller filler(block, layout.order, layout.first);
    for (int i = events.count - 1; i >= 0; --i) filler.put(events.at[i].run, events.at[i].level);
    last = filler.place();
    return true;
}

} // namespace kelvara
