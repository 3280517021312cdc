// mpeg4model.h - MPEG-4 blocks as texts of 0 and 1, written and read by the letter of the standard.

#ifndef KELVARA_MPEG4MODEL_H
#define KELVARA_MPEG4MODEL_H

#include "mpeg4words.h"

namespace mpeg4 {

inline std::string reversed(const std::string &text) {
    return {text.rbegin(), text.rend()};
}

// ---- codes ---------------------------------------------------------------------------

// One of the four tables with its escapes.
class Codes {
public:
    Codes(const Table &table, std::string escapeWord, bool isReversible)
        : words(table.words()), escape(std::move(escapeWord)), reversible(isReversible) {
        for (const auto &[key, word] : words) {
            events[word] = key;
            longest = std::max(longest, word.size());
            largestLevel[{key[0], key[1]}] = std::max(largestLevel[{key[0], key[1]}], key[2]);
            largestRun[{key[0], key[2]}] = std::max(largestRun[{key[0], key[2]}], key[1]);
        }
    }

    bool has(int last, int run, int level) const { return words.count({last, run, level}) != 0; }
    std::string word(int last, int run, int level) const { return words.at({last, run, level}); }
    // 0 and -1 without a code.
    int lmax(int last, int run) const { return valueOr(largestLevel, {last, run}, 0); }
    int rmax(int last, int level) const { return valueOr(largestRun, {last, level}, -1); }

    // 0 to 3: which escape form it takes; the reversible codes have one, 3.
    int formOf(const ModelEvent &e) const {
        const int level = std::abs(e.level), run = e.run - rmax(e.last, level) - 1;
        if (has(e.last, e.run, level)) return 0;
        if (reversible) return 3;
        if (has(e.last, e.run, level - lmax(e.last, e.run))) return 1;
        return run >= 0 && has(e.last, run, level) ? 2 : 3;
    }

    std::string text(const ModelEvent &e) const {
        const int level = std::abs(e.level);
        const std::string fixed = field(e.last, 1) + field(e.run, 6) + "1";
        switch (formOf(e)) {
            case 0:
                return word(e.last, e.run, level) + sign(e.level);
            case 1:
                return escape + "0" + word(e.last, e.run, level - lmax(e.last, e.run)) + sign(e.level);
            case 2:
                return escape + "10" + word(e.last, e.run - rmax(e.last, level) - 1, level) + sign(e.level);
        }
        if (reversible) return escape + "1" + fixed + field(level, 11) + "1" + escape + sign(e.level);
        return escape + "11" + fixed + field(e.level, 12) + "1";
    }

    Words words;
    std::map<std::string, EventKey> events;
    std::string escape;
    bool reversible;
    size_t longest = 0;

private:
    using Largest = std::map<std::pair<int, int>, int>;

    static int valueOr(const Largest &map, std::pair<int, int> key, int other) {
        const auto found = map.find(key);
        return found == map.end() ? other : found->second;
    }

    Largest largestLevel, largestRun;
};

inline const Codes vlcIntra(vlcIntraTable, "0000011", false);
inline const Codes vlcInter(vlcInterTable, "0000011", false);
inline const Codes rvlcIntra(rvlcIntraTable, "0000", true);
inline const Codes rvlcInter(rvlcInterTable, "0000", true);

inline const Codes &codesOf(bool intra, bool reversible) {
    if (reversible) return intra ? rvlcIntra : rvlcInter;
    return intra ? vlcIntra : vlcInter;
}

inline std::string blockText(const Codes &codes, const Levels &levels, int first, int count = 64) {
    std::string text;
    for (const ModelEvent &e : modelEvents(levels, first, count)) text += codes.text(e);
    return text;
}

// ---- reading ---------------------------------------------------------------------------

// What becomes of a text. `seen` bits had to be looked at to know.
struct Parsed {
    bool good = false;
    Levels levels{};
    int last = -1;
    size_t bits = 0, seen = 0;
};

// A text that is read from its front, or from its back: then it is turned over, and the codes with it.
class TextReader {
public:
    TextReader(const Codes &codes, const std::string &text, bool backward)
        : m_codes(codes), m_text(backward ? reversed(text) : text), m_backward(backward) {}

    size_t position = 0, seen = 0;

    bool event(ModelEvent &e) {
        if (m_backward) {
            const bool negative = number(1);
            if (!unsignedEvent(e)) return false;
            if (negative) e.level = -e.level;
            return true;
        }
        if (!unsignedEvent(e)) return false;
        if (!m_fixed && number(1)) e.level = -e.level;
        return true;
    }

private:
    std::string take(size_t n) {
        const std::string bits = m_text.substr(position, n);
        EXPECT_EQ(n, bits.size()) << "the text is too short for the test";
        position += n;
        seen = std::max(seen, position);
        return m_backward ? reversed(bits) : bits;
    }
    int number(int n) {
        int value = 0;
        for (char bit : take(n)) value = 2 * value + (bit == '1');
        return value;
    }
    // Empty if no code fits.
    std::string word() {
        for (size_t n = 1; n <= m_codes.longest; ++n) {
            std::string word = m_text.substr(position, n);
            if (m_backward) word = reversed(word);
            if (m_codes.events.count(word) || word == m_codes.escape) return take(n);
        }
        seen = std::max(seen, position + m_codes.longest);
        return "";
    }
    bool unsignedEvent(ModelEvent &e) {
        m_fixed = false;
        const std::string first = word();
        if (first.empty()) return false;
        if (first == m_codes.escape) return m_codes.reversible ? reversibleFields(e) : escaped(e);
        set(e, first);
        return true;
    }
    void set(ModelEvent &e, const std::string &word) {
        const EventKey key = m_codes.events.at(word);
        e = {key[0], key[1], key[2]};
    }
    bool escaped(ModelEvent &e) {
        const bool notLevel = number(1);
        if (notLevel && number(1)) return fields(e);
        const std::string second = word();
        if (second.empty() || second == m_codes.escape) return false;
        set(e, second);
        const int lmax = m_codes.lmax(e.last, e.run), rmax = m_codes.rmax(e.last, e.level);
        (notLevel ? e.run : e.level) += notLevel ? rmax + 1 : lmax;
        return true;
    }
    bool fields(ModelEvent &e) {
        m_fixed = true;
        e.last = number(1);
        e.run = number(6);
        if (!number(1)) return false;
        e.level = number(12);
        if (e.level >= 2048) e.level -= 4096;
        return e.level != 0 && e.level != -2048 && number(1);
    }
    bool reversibleFields(ModelEvent &e) {
        if (!number(1)) return false;
        if (m_backward) {
            e.level = number(11);
            if (e.level == 0 || !number(1)) return false;
            e.run = number(6);
            e.last = number(1);
            return number(1) && number(4) == 0;
        }
        e.last = number(1);
        e.run = number(6);
        if (!number(1)) return false;
        e.level = number(11);
        return e.level != 0 && number(1) && number(4) == 0;
    }

    const Codes &m_codes;
    std::string m_text;
    bool m_backward, m_fixed = false; // the level has its sign
};

inline void place(Parsed &parsed, const std::vector<ModelEvent> &events, int first) {
    parsed.last = first - 1;
    for (const ModelEvent &e : events) {
        parsed.last += e.run + 1;
        parsed.levels[parsed.last] = static_cast<Kel16s>(e.level);
    }
}

inline Parsed parsed(const Codes &codes, const std::string &text, int first) {
    TextReader reader(codes, text, false);
    Parsed result;
    std::vector<ModelEvent> events;
    ModelEvent e{};
    int places = 64 - first;
    do {
        result.good = reader.event(e) && (places -= e.run + 1) >= 0;
        events.push_back(e);
    } while (result.good && !e.last);
    result.bits = reader.position;
    result.seen = reader.seen;
    if (result.good) place(result, events, first);
    return result;
}

// From the end of the text.
inline Parsed parsedBackwards(const Codes &codes, const std::string &text, int first) {
    TextReader reader(codes, text, true);
    Parsed result;
    std::vector<ModelEvent> events;
    ModelEvent e{};
    int places = 64 - first;
    result.good = reader.event(e) && e.last;
    do {
        result.good = result.good && (places -= e.run + 1) >= 0;
        events.insert(events.begin(), e);
        result.bits = reader.position;
        if (result.good && places > 0) result.good = reader.event(e);
    } while (result.good && places > 0 && !e.last);
    result.seen = reader.seen;
    if (result.good) place(result, events, first);
    return result;
}

} // namespace mpeg4

#endif
