// kmname.cpp - the parts of a primitive's name by position, and its type tokens.

#include "kmname.h"

#include <ctype.h>
#include <string.h>

namespace {

struct TypeText {
    char const *text;
    kmType type;
};

// An element of one bit is stored as a byte; a search from the end finds the "8u" of a byte first.
const TypeText typeTexts[] = {{"1u", 8},      {"8u", 8},      {"8s", 264},    {"8sc", 1288}, {"16u", 16},
                              {"16s", 272},   {"16sc", 1296}, {"16uc", 1040}, {"32u", 32},   {"32s", 288},
                              {"32sc", 1312}, {"32f", 544},   {"32fc", 1568}, {"64u", 64},   {"64s", 320},
                              {"64sc", 1344}, {"64f", 576},   {"64fc", 1600}};
const int typeCount = sizeof(typeTexts) / sizeof(typeTexts[0]);

bool startsWith(char const *text, int length, char const *start) {
    int n = static_cast<int>(strlen(start));
    return length >= n && memcmp(text, start, n) == 0;
}

// Position of "_", or length.
int findUnderscore(char const *name, int length, int from) {
    while (from < length && name[from] != '_') ++from;
    return from;
}

// Position of the first "_" that a type token follows, or length.
int endOfBase(char const *name, int length) {
    int i = findUnderscore(name, length, 0);
    while (i < length && kmLenOfType(name + i + 1, length - i - 1) == 0) {
        i = findUnderscore(name, length, i + 1);
    }
    return i;
}

} // namespace

int kmLenOfType(char const *text, int length) {
    int k = 0;
    while (k < length && isdigit(static_cast<unsigned char>(text[k]))) ++k;
    if (k == 0 || k == length) return 0;
    if (text[k] != 'u' && text[k] != 's' && text[k] != 'f') return 0;
    return k + 1 < length && text[k + 1] == 'c' ? k + 2 : k + 1;
}

kmType kmTypeOfToken(char const *text, int length) {
    for (TypeText const &entry : typeTexts) {
        if (static_cast<int>(strlen(entry.text)) == length && memcmp(text, entry.text, length) == 0) {
            return entry.type;
        }
    }
    return 0;
}

char const *kmTokenOfType(kmType type) {
    for (int i = typeCount - 1; i >= 0; --i) {
        if (typeTexts[i].type == type) return typeTexts[i].text;
    }
    return nullptr;
}

kmNameParts::kmNameParts(char const *name, int length)
    : base(startsWith(name, length, "kels") || startsWith(name, length, "keli") ? 4 : 0),
      baseEnd(endOfBase(name, length)),
      types(baseEnd < length ? baseEnd + 1 : length),
      typesEnd(findUnderscore(name, length, types)),
      descr(typesEnd < length ? typesEnd + 1 : length),
      end(length) {}

// A token that follows none covers what the one before it does: one token serves all three.
kmTypeTokens::kmTypeTokens(char const *types, int total) {
    int next = 0;
    for (int i = 0; i < 3; ++i) {
        if (i > 0 && next == total) {
            begin[i] = begin[i - 1];
            length[i] = length[i - 1];
        } else {
            begin[i] = next;
            length[i] = kmLenOfType(types + next, total - next);
            next += length[i];
        }
    }
}
