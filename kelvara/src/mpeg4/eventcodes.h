// eventcodes.h - the codes of one event of an MPEG-4 block, escapes included.

#ifndef KELVARA_MPEG4EVENTCODES_H
#define KELVARA_MPEG4EVENTCODES_H

#include "../common/runlevel.h"

#include <cstdlib>

namespace kelvara {

// What the fixed-length escape forms carry.
constexpr int escapedRunBits = 6;
constexpr int largestEscapedLevel = 2047;

// ---- variable-length codes ------------------------------------------------------------

// The largest run of (last, level), RMAX, for all levels that have a code; -1 for the others.
struct LargestRuns {
    Kel8s at[2][64];
};

// A shorter run than the largest has the level too, or the compiler stops: only so is a run that has no code
// longer than that, and what the escape subtracts leaves a run.
constexpr LargestRuns makeLargestRuns(const EncoderTable &encoder) {
    LargestRuns runs{};
    for (int last = 0; last < 2; ++last) {
        for (int level = 0; level < 64; ++level) {
            const int largest = encoder.largestRun(last, level);
            for (int run = 0; run < largest; ++run) {
                if (encoder.largestLevel(last, run) < level) throw "a run is missing";
            }
            runs.at[last][level] = static_cast<Kel8s>(largest);
        }
    }
    return runs;
}

// ISO/IEC 14496-2 7.4.1.3 with the codes of Table B-16 or B-17. Behind the escape code, 0 leads to a code
// whose level is less by LMAX of its run, 10 to one whose run is less by RMAX + 1 of its level, and 11 to
// fields of fixed length.
template <const auto &codes>
class VlcEvents {
public:
    // REQUIRES a level of at most largestEscapedLevel.
    static void write(BitWriter &writer, const Event &e) {
        const int magnitude = std::abs(e.level);
        const int lessLevel = magnitude - encoder.largestLevel(e.last, e.run);
        const int lessRun = e.run - (largestRun(e.last, magnitude) + 1);
        if (const EventCode *code = encoder.find(e.last, e.run, magnitude)) {
            putCode(writer, *code, e.level);
        } else if (const EventCode *lower = encoder.find(e.last, e.run, lessLevel)) {
            putEscaped(writer, 0b0, 1, *lower, e.level);
        } else if (const EventCode *shorter = encoder.find(e.last, lessRun, magnitude)) {
            putEscaped(writer, 0b10, 2, *shorter, e.level);
        } else {
            putFixed(writer, e);
        }
    }

    // False if there is no such code.
    static bool read(BitReader &reader, Event &e) {
        const Kel32s line = readCode(reader, decoderTable<codes>);
        if (line == noCode) return false;
        if (levelOf(line) == 0) return readEscaped(reader, e);
        setEvent(reader, line, 0, 0, e);
        return true;
    }

private:
    static constexpr EncoderTable encoder = makeEncoderTable(codes);
    static constexpr LargestRuns runs = makeLargestRuns(encoder);

    static int largestRun(int last, int level) { return level < 64 ? runs.at[last][level] : -1; }

    static void putEscape(BitWriter &writer, Kel32u form, int formBits) {
        const EventCode &escape = *(std::end(codes) - 1);
        writer.put(escape.code, escape.bits);
        writer.put(form, formBits);
    }
    static void putEscaped(BitWriter &writer, Kel32u form, int formBits, const EventCode &code, int level) {
        putEscape(writer, form, formBits);
        putCode(writer, code, level);
    }
    static void putFixed(BitWriter &writer, const Event &e) {
        putEscape(writer, 0b11, 2);
        writer.put(static_cast<Kel32u>(e.last), 1);
        writer.put(static_cast<Kel32u>(e.run), escapedRunBits);
        writer.put(1, 1);
        writer.put(static_cast<Kel32u>(e.level), 12);
        writer.put(1, 1);
    }

    static void setEvent(BitReader &reader, Kel32s line, int moreRun, int moreLevel, Event &e) {
        e.last = lastOf(line);
        e.run = runOf(line) + moreRun;
        e.level = readSign(reader, levelOf(line) + moreLevel);
    }
    static bool readEscaped(BitReader &reader, Event &e) {
        const bool longerRun = reader.readBit();
        if (longerRun && reader.readBit()) return readFixed(reader, e);
        const Kel32s line = readCode(reader, decoderTable<codes>);
        if (line == noCode || levelOf(line) == 0) return false;
        if (longerRun) {
            setEvent(reader, line, largestRun(lastOf(line), levelOf(line)) + 1, 0, e);
        } else {
            setEvent(reader, line, 0, encoder.largestLevel(lastOf(line), runOf(line)), e);
        }
        return true;
    }
    static bool readFixed(BitReader &reader, Event &e) {
        e.last = reader.readBit();
        e.run = static_cast<int>(reader.read(escapedRunBits));
        if (!reader.readBit()) return false;
        const int bits = static_cast<int>(reader.read(12));
        e.level = bits - (bits & 2048) * 2;
        return std::abs(e.level) <= largestEscapedLevel && e.level != 0 && reader.readBit();
    }
};

// ---- reversible codes --------------------------------------------------------------------

// ISO/IEC 14496-2 Table B-23. The escape code stands at both ends of its fixed fields: with a 1 behind it in
// front of them, with the sign behind it at their end.
template <const auto &codes>
class RvlcEvents {
public:
    // REQUIRES a level of at most largestEscapedLevel.
    static void write(BitWriter &writer, const Event &e) {
        const int magnitude = std::abs(e.level);
        if (const EventCode *code = encoder.find(e.last, e.run, magnitude)) {
            putCode(writer, *code, e.level);
            return;
        }
        const EventCode &escape = *(std::end(codes) - 1);
        writer.put(escape.code, escape.bits);
        writer.put(1, 1);
        writer.put(static_cast<Kel32u>(e.last), 1);
        writer.put(static_cast<Kel32u>(e.run), escapedRunBits);
        writer.put(1, 1);
        writer.put(static_cast<Kel32u>(magnitude), levelBits);
        writer.put(1, 1);
        putCode(writer, escape, e.level);
    }

    // Both are false if there is no such code.
    static bool read(BitReader &reader, Event &e) {
        const Kel32s line = readCode(reader, decoderTable<codes>);
        if (line == noCode) return false;
        if (levelOf(line) == 0 ? !readFields(reader, e) : !setEvent(line, e)) return false;
        e.level = readSign(reader, e.level);
        return true;
    }
    static bool read(BackwardBitReader &reader, Event &e) {
        const bool negative = reader.readBit();
        const Kel32s line = readCode(reader, backwardDecoderTable<codes>);
        if (line == noCode) return false;
        if (levelOf(line) == 0 ? !readFields(reader, e) : !setEvent(line, e)) return false;
        if (negative) e.level = -e.level;
        return true;
    }

private:
    static constexpr EncoderTable encoder = makeEncoderTable(codes);
    static constexpr int levelBits = 11;

    static bool setEvent(Kel32s line, Event &e) {
        e = {lastOf(line), runOf(line), levelOf(line)};
        return true;
    }
    // From one escape code to the other one.
    static bool readFields(BitReader &reader, Event &e) {
        if (!reader.readBit()) return false;
        e.last = reader.readBit();
        e.run = static_cast<int>(reader.readNumber(escapedRunBits));
        if (!reader.readBit()) return false;
        e.level = static_cast<int>(reader.readNumber(levelBits));
        return e.level != 0 && reader.readBit() && isEscape(reader);
    }
    static bool readFields(BackwardBitReader &reader, Event &e) {
        if (!reader.readBit()) return false;
        e.level = static_cast<int>(reader.readNumber(levelBits));
        if (e.level == 0 || !reader.readBit()) return false;
        e.run = static_cast<int>(reader.readNumber(escapedRunBits));
        e.last = reader.readBit();
        return reader.readBit() && isEscape(reader);
    }
    template <class Reader>
    static bool isEscape(Reader &reader) {
        const EventCode &escape = *(std::end(codes) - 1);
        return reader.readNumber(escape.bits) == escape.code;
    }
};

} // namespace kelvara

#endif
