// rkoption.cpp - what the arguments of keys mean.

#include "rkoption.h"

#include "rkstream.h"

struct LetterBits {
    char letter;
    int bits;
};

// All letters of the word count, wherever they stand.
static int lettersToBits(rkString const &text, LetterBits const *table, int count) {
    int bits = 0;
    for (int i = 0; i < text.length(); ++i) {
        for (int k = 0; k < count; ++k) {
            if (text[i] == table[k].letter) bits |= table[k].bits;
        }
    }
    return bits;
}

int getAskLevel(rkString text) {
    static const LetterBits table[] = {{'M', 4}, {'P', 2}, {'T', 1}};
    const int all = 15;
    int level = lettersToBits(text, table, 3);
    return level ? level : all;
}

int getLevel(rkString text) {
    const int warnings = MsgError | MsgWarning;
    const int results = warnings | MsgResult;
    static const LetterBits table[] = {{'E', MsgError},
                                       {'W', warnings},
                                       {'P', results},
                                       {'I', results | MsgProcess},
                                       {'T', results | MsgTrace},
                                       {'M', results | MsgMemory},
                                       {'D', results | MsgData}};
    return lettersToBits(text, table, 7);
}

char firstChar(rkString const &text) {
    return text.length() > 0 ? text[0] : '\0';
}

int getPriority(rkString text) {
    static const LetterBits table[] = {{'H', 1}, {'N', 2}, {'L', 3}};
    return lettersToBits(text.substr(0, 1), table, 3);
}

int getCondition(rkString &text) {
    static const LetterBits table[] = {{'=', CondEqual}, {'+', CondAnd}, {'-', CondNot}};
    int kind = lettersToBits(text.substr(0, 1), table, 3);
    if (kind != CondOr) text = text.substr(1);
    return text.length() > 0 ? kind : CondEmpty;
}
