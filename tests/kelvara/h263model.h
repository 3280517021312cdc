// h263model.h - the codes of H.263 blocks, told once more as texts.

#ifndef KELVARA_H263MODEL_H
#define KELVARA_H263MODEL_H

#include "interwords.h"

namespace h263 {

const std::string escape = "0000011";

// ITU-T H.263 Table I.2, written as Table 16.
inline const std::vector<std::string> tableI2[2] = {
    {"10 110 1110 01100 01101 010000 010001 010010 0010110 00011011 000100000 000100001 000011010 000011011 "
     "000011100 000011101 000011110 000011111 00000100011 00000100010 000001010111 000001010110 000001010101 "
     "000001010100 000001010011",
     "1111 010100 0010100 00011110 0000001111 00000100001 000001010000",
     "01011 0010101 0000001110 0000001001", "010101 00011101 0000001101 000001010001",
     "010011 000100011 00000000111", "0010111 000100010 000001010010", "00011100 0000001100",
     "00011111 0000001011", "000100101 0000001010", "000100100 00000000110", "0000100001", "0000100000",
     "0000001000", "00000100000"},
    {"0111 001100 0010000 00010011 000010001 000010010 0000000100 00000100111 00000100110 000001011111",
     "001111 000010011 0000000101 00000100101",
     "001110 000010100 00000100100",
     "001101 0000000110 000001011110",
     "0010001 0000000111",
     "0010011 000001011101",
     "0010010 000001011100",
     "00010100 000001011011",
     "00010101",
     "00011010",
     "00011001",
     "00011000",
     "00010111",
     "00010110",
     "000011001",
     "000010101",
     "000010110",
     "000011000",
     "000010111",
     "00000000100",
     "00000000101",
     "000001011000",
     "000001011001",
     "000001011010"}};

inline Words tableWords(const std::vector<std::string> (&table)[2]) {
    Words words;
    for (int last : {0, 1}) addWords(words, last, table[last]);
    return words;
}

inline const Words inter = tableWords(interTable), advanced = tableWords(tableI2);

// How a block is coded.
struct Coding {
    bool intra, adv, mod;

    const Words &words() const { return adv ? advanced : inter; }
    int first() const { return intra && !adv; }
    int low() const { return mod ? -1024 : -127; }
    int high() const { return mod ? 1023 : 127; }
};

inline std::string eventText(const Coding &coding, int last, int run, int level) {
    const auto word = coding.words().find({last, run, std::abs(level)});
    if (word != coding.words().end()) return word->second + sign(level);
    const std::string text = escape + field(last, 1) + field(run, 6);
    if (std::abs(level) <= 127) return text + field(level, 8);
    const std::string bits = field(level, 11); // b11 to b1; sent are b5 to b1, then b11 to b6
    return text + "10000000" + bits.substr(6) + bits.substr(0, 6);
}

inline std::string blockText(const Coding &coding, const Levels &levels, int count) {
    std::string text;
    for (const ModelEvent &e : modelEvents(levels, coding.first(), count))
        text += eventText(coding, e.last, e.run, e.level);
    return text;
}

// Takes the text apart; false if that cannot be done.
class Parser {
public:
    Parser(const Coding &coding, const std::string &text) : m_coding(coding), m_text(text) {}

    bool block(Levels &levels, int &place) {
        levels = {};
        place = m_coding.first() - 1;
        for (ModelEvent e{0, 0, 0}; !e.last;) {
            if (!event(e)) return false;
            place += e.run + 1;
            if (place > 63) return false;
            levels[place] = static_cast<Kel16s>(e.level);
        }
        return true;
    }
    int bits() const { return static_cast<int>(m_at); }

private:
    bool take(const std::string &word) {
        if (m_text.compare(m_at, word.size(), word) != 0) return false;
        m_at += word.size();
        return true;
    }
    int takeNumber(int n) {
        const std::string bits = m_text.substr(m_at, n);
        m_at += n;
        return bits.empty() ? 0 : std::stoi(bits, nullptr, 2);
    }
    int takeLevel() {
        const int level = takeNumber(8);
        if (level != 128) return level < 128 ? level : level - 256;
        if (!m_coding.mod) return 0;
        const int low = takeNumber(5), all = takeNumber(6) * 32 + low;
        return all < 1024 ? all : all - 2048;
    }
    bool event(ModelEvent &e) {
        for (const auto &[key, word] : m_coding.words()) {
            if (!take(word)) continue;
            e = {key[0], key[1], takeNumber(1) ? -key[2] : key[2]};
            return true;
        }
        if (!take(escape)) return false;
        e.last = takeNumber(1);
        e.run = takeNumber(6);
        e.level = takeLevel();
        return e.level != 0;
    }

    const Coding &m_coding;
    const std::string &m_text;
    size_t m_at = 0;
};

} // namespace h263

#endif
