// kmname.h - the parts of a primitive's name by position, and its type tokens; nothing here takes memory.

#ifndef RAKOVA_KMNAME_H
#define RAKOVA_KMNAME_H

#include "kmtype.h"

// Positions in the name. A part that the name lacks is empty.
struct kmNameParts {
    kmNameParts(char const *name, int length);

    int base; // behind the prefix
    int baseEnd;
    int types;
    int typesEnd;
    int descr;
    int end;
};

// The type tokens of a text as first source, second source and destination, by position.
struct kmTypeTokens {
    kmTypeTokens(char const *types, int length);

    int begin[3];
    int length[3];
};

// Length of the type token at the start of the text: digits, one of "usf", perhaps "c". 0 if there is none.
int kmLenOfType(char const *text, int length);
kmType kmTypeOfToken(char const *text, int length); // 0 for a token that is no type
char const *kmTokenOfType(kmType type);             // null for an undefined type

#endif
