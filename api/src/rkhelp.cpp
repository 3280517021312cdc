// rkhelp.cpp - help on the keys, short, extended and for one key.

#include "rksession.h"

static bool isListed(rkOption const *option, bool hide) {
    return !(hide && option->m_hidden);
}

static void putTitle(char const *title, bool hide) {
    g_ostrm << title << (hide ? "" : " with hidden keys") << "\n";
}

void rkSession::hint(char key, bool hide) {
    if (key == 1) {
        hint_quick(hide);
    } else if (key == (hide ? 'h' : '?')) {
        hint_full(hide);
    } else {
        hint_descr(key);
    }
}

void rkSession::hint_quick(bool hide) {
    putTitle("QUICK HELP", hide);
    for (rkOption *option : m_options) {
        if (isListed(option, hide)) g_ostrm << option->m_help;
    }
}

void rkSession::hint_full(bool hide) {
    putTitle("EXTENDED HELP", hide);
    for (rkOption *option : m_options) {
        if (!isListed(option, hide) || option->m_help.length() == 0) continue;
        g_ostrm << "\n" << option->m_help;
        if (option->m_hidden) g_ostrm << "This is hidden key used by developers only\n";
        g_ostrm << option->m_descr;
    }
}

void rkSession::hint_descr(char key) {
    g_ostrm << "EXTENDED KEY HELP\n";
    rkOption *option = getOption(key);
    if (!option) {
        g_ostrm << "Key -" << key << " is not valid\n";
        return;
    }
    if (option->m_help.length() > 0) {
        g_ostrm << option->m_help;
    } else {
        g_ostrm << "Key -" << key << " is deprecated\n";
    }
    if (option->m_descr.length() > 0) {
        g_ostrm << option->m_descr;
    } else {
        g_ostrm << "No detailed description for this key\n";
    }
}
