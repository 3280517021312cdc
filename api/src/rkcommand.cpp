// rkcommand.cpp - cuts the arguments of the program into keys.

#include "rkcommand.h"

bool isKeyString(rkString const &text) {
    return text.length() >= 2 && (text[0] == '-' || text[0] == '/');
}

static bool isPrefix(char c) {
    return c == '-' || c == '+' || c == '=';
}

bool rkCommandKey::setArg(rkString text, rkString next) {
    if (!isKeyString(text)) return false;
    m_key = text[1];
    rkString rest = text.substr(2);
    m_arg = "";
    if (isPrefix(rest[0])) {
        m_arg = rkString(rest[0]);
        rest = rest.substr(1);
    }
    m_arg += rest.length() > 0 ? rest : next;
    return true;
}

void rkCommandList::setArgs(int argc, char **argv) {
    rkStringList texts;
    for (int i = 0; i < argc; ++i) texts.push_back(rkString(argv[i]));
    setArgs(texts);
}

void rkCommandList::setArgs(char const *text) {
    rkStringList texts;
    rkString(text).parse(texts, " ;\t\r\n");
    setArgs(texts);
}

// A text that is no key belongs to the key in front of it, whether or not that key has use for it.
void rkCommandList::setArgs(rkStringList const &texts) {
    for (rkList<rkString>::iterator i = texts.begin(); i != texts.end();) {
        rkString text = *i++;
        rkString next("");
        if (i != texts.end() && !isKeyString(*i)) next = *i++;
        setArg(text, next);
    }
}

void rkCommandList::setArg(rkString text, rkString next) {
    rkCommandKey key;
    if (key.setArg(text, next)) push_back(key);
}

void rkCommandList::setArg(char key, rkString arg) {
    rkString text("-");
    text << key << arg;
    setArg(text, rkString(""));
}

bool rkCommandList::isKey(char key) const {
    rkString arg;
    return getArg(key, arg);
}

bool rkCommandList::getArg(char key, rkString &arg) const {
    for (iterator i = end(); i != begin();) {
        --i;
        if (i->m_key != key) continue;
        arg = i->m_arg;
        return true;
    }
    return false;
}
