// rkcommand.h - the keys of the command line.

#ifndef RAKOVA_RKCOMMAND_H
#define RAKOVA_RKCOMMAND_H

#include "rklist.h"
#include "rkstring.h"

// At least 2 characters, the first one "-" or "/".
bool isKeyString(rkString const &text);

class rkCommandKey {
public:
    // Takes the key from text, and the argument from the rest of it or else from next. False if text is no
    // key.
    bool setArg(rkString text, rkString next);

    char m_key = 0;
    rkString m_arg;
};

// In the order given, doubles included.
class rkCommandList : public rkList<rkCommandKey> {
public:
    void setArgs(int argc, char **argv); // all argc texts
    void setArgs(char const *text);
    void setArgs(rkStringList const &texts);
    void setArg(rkString text, rkString next); // a text that is no key is dropped
    void setArg(char key, rkString arg);
    bool isKey(char key) const;
    bool getArg(char key, rkString &arg) const; // of the last one
};

#endif
