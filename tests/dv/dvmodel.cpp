// dvmodel.cpp - a compressed segment of DV read bit by bit.

#include "dvmodel.h"

#include <vector>

namespace dv {

namespace {

struct Event {
    int run = -1, level = 0; // run -1: no code
};

// By a code with its sign as a number below a 1.
std::vector<Event> eventsByCode() {
    std::vector<Event> events(2u << longestCode);
    for (auto const &[what, bits] : codes()) {
        const auto [run, amplitude] = what;
        const size_t code = std::stoul("1" + bits, nullptr, 2);
        if (amplitude == 0) {
            events[code] = {run, 0};
            continue;
        }
        events[2 * code] = {run, amplitude};
        events[2 * code + 1] = {run, -amplitude};
    }
    return events;
}

// Bits from the front of a text.
struct Tape {
    Bits bits;
    size_t at = 0;

    Bits rest() const { return bits.substr(at); }
    int number(int count) {
        const Bits word = bits.substr(at, count);
        at += word.size();
        return std::stoi(word, nullptr, 2);
    }
};

struct Reading {
    ModelBlock block;
    int place = 1;
    Bits begun; // of a code

    void head(Tape &tape) {
        const int dc = tape.number(9);
        block.levels[0] = dc >= 256 ? dc - 512 : dc;
        block.count = dc == 0 ? 0 : 1;
        block.mode = tape.number(1);
        block.classNumber = tape.number(2);
    }

    void take(Event const &event) {
        if (event.run == 127 && event.level == 0) {
            block.ended = true;
            return;
        }
        place += event.run;
        if (place >= 64) {
            block.broken = true;
            return;
        }
        if (event.level != 0) {
            block.levels[scans[block.mode][place]] = event.level;
            block.count = place + 1;
        }
        ++place;
    }

    // Gives back what it does not need.
    void read(Tape &tape) {
        static const std::vector<Event> events = eventsByCode();
        Tape all = {begun + tape.rest()};
        tape.at = tape.bits.size();
        while (!block.ended && !block.broken) {
            size_t code = 1, length = 0;
            const size_t left = all.bits.size() - all.at;
            while (length < left && length < static_cast<size_t>(longestCode) && events[code].run < 0)
                code = 2 * code + (all.bits[all.at + length++] - '0');
            if (events[code].run < 0) {
                begun = all.rest();
                block.broken = length == static_cast<size_t>(longestCode);
                return;
            }
            all.at += length;
            take(events[code]);
        }
        begun.clear();
        tape = {all.rest()};
    }
};

Bits textOf(unsigned char const *bytes, int count) {
    Bits text;
    for (int i = 0; i < count; ++i) text += bitsOf(bytes[i], 8);
    return text;
}

// All blocks of a macroblock that have not ended; false if one of them breaks.
bool readOn(Reading *first, Tape &tape) {
    for (int i = 0; i < blocksOfMacroblock; ++i) {
        if (first[i].block.ended) continue;
        first[i].read(tape);
        if (first[i].block.broken) return false;
    }
    return true;
}

// The first two passes; `spare` is what they leave. False if a block breaks.
bool readMacroblock(unsigned char const *dif, Reading *first, Bits &spare) {
    Tape room;
    bool whole = true;
    unsigned char const *area = dif + headBytes;
    for (int i = 0; i < blocksOfMacroblock; ++i) {
        Tape tape = {textOf(area, areaBytes(i))};
        area += areaBytes(i);
        first[i].block.quantiser = dif[3] % 16;
        first[i].head(tape);
        first[i].read(tape);
        whole = whole && !first[i].block.broken;
        if (first[i].block.ended) room.bits += tape.rest();
    }
    whole = whole && readOn(first, room);
    spare = room.rest();
    return whole;
}

} // namespace

unsigned int ModelBlock::params() const {
    const unsigned int fields = quantiser + 16 * classNumber + 64 * mode + 256 * count;
    return fields | (ended ? 0u : 0x80000000u);
}

ModelBlocks decodeByModel(unsigned char const *segment) {
    std::array<Reading, blocks> readings;
    Tape room;
    int whole = 0;
    bool any = true;
    for (int m = 0; m < macroblocks; ++m) {
        Bits spare;
        any = readMacroblock(segment + m * difBytes, &readings[m * blocksOfMacroblock], spare) && any;
        if (!any) continue;
        ++whole;
        room.bits += spare;
    }
    for (int m = 0; m < whole; ++m) {
        if (!readOn(&readings[m * blocksOfMacroblock], room)) break;
    }
    ModelBlocks decoded;
    for (int i = 0; i < blocks; ++i) decoded[i] = readings[i].block;
    return decoded;
}

} // namespace dv
