// rkistream.cpp - where parameter values come from.

#include "rkistream.h"

#include "rksession.h"

rkIStream g_istrm;

// ---- -d data ------------------------------------------------------------------

void rkDataList::set(rkString text) {
    rkString name, value;
    text.parse(name, value, "=");
    set(name, value);
}

void rkDataList::set(rkString name, rkString value) {
    name.trim();
    value.trim();
    if (name.length() == 0) return;
    iterator present = find(name);
    if (present != end()) erase(present);
    push_back({name, value});
}

bool rkDataList::get(rkString name, rkString &value) const {
    iterator item = find(name);
    if (item == end()) return false;
    value = item->value;
    return true;
}

rkDataList::iterator rkDataList::find(rkString name) const {
    iterator item = begin();
    while (item != end() && item->name != name) ++item;
    return item;
}

// ---- sources ------------------------------------------------------------------

rkIStream::rkIStream()
    : m_console(nullptr), m_iniFile(nullptr), m_section("Rakova"), m_writeIni(false), m_source(FromNowhere) {}

rkIStream::~rkIStream() {
    close();
}

void rkIStream::setIStream(i_stream *console) {
    if (console == m_console) return;
    deleteIStream();
    m_console = console;
}

bool rkIStream::setIniFile(rkString name, bool write) {
    deleteIniFile();
    m_iniFile = new rkIniFile;
    m_writeIni = write;
    return m_iniFile->open(rkSession::getInPath(name), write);
}

void rkIStream::deleteIStream() {
    if (m_console != &c_in) delete m_console;
    m_console = nullptr;
}

void rkIStream::deleteIniFile() {
    delete m_iniFile;
    m_iniFile = nullptr;
    m_writeIni = false;
}

void rkIStream::close() {
    deleteIStream();
    deleteIniFile();
}

rkString rkIStream::setIniSection(rkString section) {
    rkString old = m_section;
    m_section = section;
    return old;
}

// ---- values -------------------------------------------------------------------

rkString rkIStream::getItemValue(rkString name, rkString defaultValue, rkString prompt, rkString comment) {
    rkString result = "";
    if (prompt.length() == 0) prompt = name;
    m_source = hasConsole() ? FromConsole : FromDefault;
    if (m_data.get(name, result)) {
        m_source = FromData;
    } else if (m_iniFile) {
        result = m_iniFile->read(m_section, name, "");
        if (result.length() > 0) m_source = FromIni;
    }
    if (m_source == FromConsole) result = getItemValue(*m_console, prompt, defaultValue);
    if (m_source == FromDefault) result = defaultValue;
    if (m_writeIni && m_iniFile) m_iniFile->write(m_section, name, result, comment);
    return result;
}

// The flush makes a prompt without a line end seen, however standard output is buffered.
rkString rkIStream::getItemValue(i_stream &console, rkString prompt, rkString defaultValue) {
    c_out << "\n " << prompt << " [" << defaultValue << "] = ";
    if (c_out.m_file) fflush(c_out.m_file);
    rkString answer;
    console.getline(answer);
    if (answer.length() == 0) {
        m_source = FromDefault;
        return defaultValue;
    }
    m_source = FromConsole;
    return answer;
}
