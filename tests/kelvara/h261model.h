// h261model.h - the codes of H.261 blocks, told once more as texts.

#ifndef KELVARA_H261MODEL_H
#define KELVARA_H261MODEL_H

#include "h26xtest.h"

namespace h261 {

// ITU-T H.261 Table 5 without signs: a line for each run, levels from 1 on.
inline const std::vector<std::string> table5 = {
    "11 0100 00101 0000110 00100110 00100001 0000001010 000000011101 000000011000 000000010011 000000010000 "
    "0000000011010 0000000011001 0000000011000 0000000010111",
    "011 000110 00100101 0000001100 000000011011 0000000010110 0000000010101",
    "0101 0000100 0000001011 000000010100 0000000010100",
    "00111 00100100 000000011100 0000000010011",
    "00110 0000001111 000000010010",
    "000111 0000001001 0000000010010",
    "000101 000000011110",
    "000100 000000010101",
    "0000111 000000010001",
    "0000101 0000000010001",
    "00100111 0000000010000",
    "00100011",
    "00100010",
    "00100000",
    "0000001110",
    "0000001101",
    "0000001000",
    "000000011111",
    "000000011010",
    "000000011001",
    "000000010111",
    "000000010110",
    "0000000011111",
    "0000000011110",
    "0000000011101",
    "0000000011100",
    "0000000011011"};
inline const std::string endOfBlock = "10", escape = "000001";

inline Words tableWords() {
    Words words;
    addWords(words, 0, table5);
    return words;
}

inline const Words words = tableWords();

inline std::string eventText(int run, int level, bool first) {
    if (first && run == 0 && std::abs(level) == 1) return "1" + sign(level);
    const auto word = words.find({0, run, std::abs(level)});
    if (word != words.end()) return word->second + sign(level);
    return escape + field(run, 6) + field(level, 8);
}

// Levels from the place `intra` on, the first `count` of them.
inline std::string blockText(const Levels &levels, bool intra, int count) {
    const auto events = modelEvents(levels, intra, count);
    std::string text = intra ? dcText(levels[0]) : "";
    for (const ModelEvent &e : events) text += eventText(e.run, e.level, !intra && &e == &events[0]);
    return !intra && events.empty() ? "" : text + endOfBlock;
}

// Takes the text apart; false if that cannot be done.
class Parser {
public:
    explicit Parser(const std::string &text) : m_text(text) {}

    bool block(bool intra, Levels &levels, int &last) {
        levels = {};
        m_place = intra ? 0 : -1;
        if (intra && !dc(levels)) return false;
        if (!intra && take("1") && !put(levels, 0, takeSign(1))) return false;
        while (!take(endOfBlock)) {
            if (!event(levels)) return false;
        }
        last = m_place;
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
        return std::stoi(bits, nullptr, 2);
    }
    int takeSign(int level) { return takeNumber(1) ? -level : level; }
    bool dc(Levels &levels) {
        const int code = takeNumber(8);
        levels[0] = static_cast<Kel16s>(code == 255 ? 128 : code);
        return code != 0 && code != 128;
    }
    bool event(Levels &levels) {
        for (const auto &[key, word] : words) {
            if (take(word)) return put(levels, key[1], takeSign(key[2]));
        }
        if (!take(escape)) return false;
        const int run = takeNumber(6), level = takeNumber(8);
        if (level == 0 || level == 128) return false;
        return put(levels, run, level < 128 ? level : level - 256);
    }
    bool put(Levels &levels, int run, int level) {
        m_place += run + 1;
        if (m_place > 63) return false;
        levels[m_place] = static_cast<Kel16s>(level);
        return true;
    }

    const std::string &m_text;
    size_t m_at = 0;
    int m_place = -1;
};

} // namespace h261

#endif
