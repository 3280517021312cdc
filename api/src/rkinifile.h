// rkinifile.h - a file of sections and keys, kept in memory and written back at close.

#ifndef RAKOVA_RKINIFILE_H
#define RAKOVA_RKINIFILE_H

#include "rkstring.h"

struct rkValueItem {
    rkString name;
    rkString value; // "~~~" marks a key without a value; the mark never reaches a file
    rkString comment;
};

class rkValues : public rkList<rkValueItem *> {
public:
    rkValueItem *exist(rkString name) const; // exact name, or null
};

struct rkSectionItem {
    rkString name;
    rkValues *values; // owned
};

class rkSections : public rkList<rkSectionItem *> {
public:
    rkSectionItem *exist(rkString name) const;
};

// Owns all its items. A key missing from a file, a line without a section and the like are no errors.
class rkIniFile {
public:
    rkIniFile();
    ~rkIniFile(); // closes
    rkIniFile(rkIniFile const &) = delete;
    rkIniFile &operator=(rkIniFile const &) = delete;

    bool open(rkString name, bool write); // true if the object can be used
    void close();                         // updateFile, then forgets all; a second close does nothing
    void updateFile();                    // writes the file if it is writable

    bool getSection(rkString line, rkString &name);
    bool getValue(rkString line, rkString &key, rkString &value);

    bool sectionExist(rkString section) const;
    bool valueExist(rkString section, rkString key) const;
    rkString read(rkString section, rkString key, rkString defaultValue) const;
    void write(rkString section, rkString key, rkString value, rkString comment);
    void write(rkString section, rkString key);
    void write(rkString section);
    rkValues *getSectionValues(rkString section) const;
    void eraseSection(rkString section);
    void deleteKey(rkString section, rkString key);

    rkString m_fileName;
    rkSections m_sections;
    bool m_writable; // the file is rewritten at close
};

#endif
