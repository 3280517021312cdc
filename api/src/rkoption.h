// rkoption.h - the table of keys: what each says, does and explains.

#ifndef RAKOVA_RKOPTION_H
#define RAKOVA_RKOPTION_H

#include "rkstring.h"

class rkSession;

// One row.
struct rkOption {
    char m_key;
    bool m_hidden;                    // for developers, not in the plain help
    rkString m_help;                  // the line of the short help; empty: not in the lists of help
    rkString (*m_info)(rkString arg); // what the key will do, in words
    void (*m_apply)(rkString arg, rkSession *session); // does it
    rkString m_descr;                                  // the extended help
};

// Bit sets and numbers out of the arguments.
int getAskLevel(rkString text); // -A: 1 timing, 2 common parameters, 4 misalignment, 8 each test
int getLevel(rkString text);    // -L: 0 if there is no level letter
int getPriority(rkString text); // -Y: 1 high, 2 normal, 3 low, 0 none of them
enum Condition { CondOr, CondAnd, CondNot, CondEqual, CondEmpty };
int getCondition(rkString &text);     // -f, -t: a Condition; the prefix is cut off
char firstChar(rkString const &text); // NUL of an empty text

// Texts of the key table. The extended help of a key that takes a file tells the default path in its middle.
struct rkOptionText {
    char m_key;
    char const *m_help;
    char const *m_descr;
    char const *m_suffix; // of the default file, null for a key without one
    char m_dirKey;        // the key that moves the default directory
    char const *m_descrEnd;
};
extern const rkOptionText rkOptionTexts[];        // ends with key 0
rkOptionText const &rkFindOptionText(char key);   // an unknown key gives the row of key 0, with empty texts
rkString rkOptionDescr(rkOptionText const &text); // the whole extended help

// Functions of the key table.
struct rkOptionAction {
    char m_key;
    bool m_hidden;
    rkString (*m_info)(rkString arg);
    void (*m_apply)(rkString arg, rkSession *session);
};
extern const rkOptionAction rkOptionActions[]; // ends with key 0
rkOptionAction const &rkFindOptionAction(char key);

#endif
