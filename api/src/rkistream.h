// rkistream.h - where parameter values come from: -d data, the ini file, the console, the default.

#ifndef RAKOVA_RKISTREAM_H
#define RAKOVA_RKISTREAM_H

#include "rkinifile.h"
#include "rkstream.h"

struct rkData {
    rkString name;
    rkString value;
};

// The -d pairs; the last of a name wins.
class rkDataList : public rkList<rkData> {
public:
    void set(rkString text); // name=value
    void set(rkString name, rkString value);
    bool get(rkString name, rkString &value) const;
    iterator find(rkString name) const; // end() if absent
};

class rkIStream {
public:
    enum Source { FromDefault = 0, FromConsole = 1, FromIni = 2, FromData = 3, FromNowhere = 4 };

    rkIStream();
    virtual ~rkIStream();
    rkIStream(rkIStream const &) = delete;
    rkIStream &operator=(rkIStream const &) = delete;

    void setIStream(i_stream *console); // drops the present one; c_in is never deleted
    bool setIniFile(rkString name, bool write);
    void deleteIStream();
    void deleteIniFile();
    void close();
    rkString setIniSection(rkString section); // returns the old one

    bool hasConsole() const { return m_console != nullptr; }
    bool iniIsWritten() const { return m_iniFile && m_iniFile->m_writable; } // attached and open for writing

    // An empty prompt is the name. comment goes into a written ini file.
    rkString getItemValue(rkString name, rkString defaultValue, rkString prompt, rkString comment);
    // Asks on the console, past all levels and logs. An empty answer is the default.
    rkString getItemValue(i_stream &console, rkString prompt, rkString defaultValue);

    i_stream *m_console;  // set if values may be asked
    rkIniFile *m_iniFile; // owned
    rkDataList m_data;
    rkString m_section; // of the ini file
    bool m_writeIni;    // values are written back
    int m_source;       // of the last value
};

extern rkIStream g_istrm;

#endif
