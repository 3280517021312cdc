// rkparameter.cpp - describing, printing, reading and walking of any parameter.

#include "rkparameter.h"

#include "rkexception.h"

rkParameter::rkParameter(rkString name, rkString descr) {
    init(name, descr);
}

void rkParameter::init(rkString name, rkString descr) {
    m_name = name;
    m_descr = descr.length() ? descr : name;
    m_done = false;
    m_readable = true;
    m_flags = 0;
    m_deprecated = false;
    m_deprecatedText = "";
}

void rkParameter::reset() {
    m_done = false;
}

rkString rkParameter::valueString() const {
    return "";
}

rkString rkParameter::defaultString() const {
    return valueString();
}

rkString rkParameter::validString() const {
    return "";
}

rkString rkParameter::description() const {
    return m_name + " = " + defaultString();
}

rkString rkParameter::prompt() const {
    rkString valid = validString();
    return valid.length() ? m_descr + " {" + valid + "}" : m_descr;
}

void rkParameter::resetIterator() {
    m_done = false;
}

bool rkParameter::firstValue() {
    resetIterator();
    return nextValue();
}

bool rkParameter::nextValue() {
    m_done = !m_done;
    return m_done;
}

bool rkParameter::isDeprecatedParm() {
    return false;
}

bool rkParameter::isDeprecatedValue() {
    return false;
}

bool rkParameter::setDeprecatedFlag(bool) {
    return false;
}

rkOStream &rkParameter::toOStream(rkOStream &stream) const {
    if (!m_name.length()) return stream;
    return stream << m_name << "=" << valueString() << " ";
}

int rkParameter::colmIndex() const {
    return -1;
}

rkCStream &rkParameter::cellToCStream(rkCStream &stream, rkString text) const {
    if (colmIndex() < 0) return stream << text;
    stream.setColm(colmIndex(), text);
    return stream;
}

rkCStream &rkParameter::toCStream(rkCStream &stream) const {
    rkString text = valueString();
    if (!m_name.length()) {
        text = "";
    } else if (m_deprecated) {
        text = m_deprecatedText;
    } else if (m_flags & QuotedInTables) {
        text = rkString(" \"") + text + "\"";
    }
    return cellToCStream(stream, text);
}

rkCStream &rkParameter::nameToCStream(rkCStream &stream) const {
    return cellToCStream(stream, m_name);
}

// A bad text leaves the value. Nothing but this call is between the jump and its catch, so that no local of
// the caller is lost by the jump.
void rkParameter::readValue(rkIStream &stream) {
    rkSignalGuard guard;
    try {
        if (_setjmp(tsSignal::m_jmpbuf)) throw rkException(tsSignal::getInfo());
        rkString valid = validString();
        rkString question = prompt();
        translate(stream.getItemValue(m_name, defaultString(), question, valid));
    } catch (rkException &e) {
        g_ostrm << "-" << e.info() << "\n";
    }
}

// Questions and answers are seen whatever level the user wants otherwise.
rkIStream &rkParameter::fromIStream(rkIStream &stream) {
    if (!m_name.length()) return stream;
    OutputLevel level = g_ostrm.outLevel();
    if (m_readable) {
        if (stream.hasConsole()) g_ostrm.setOutLevel(MsgError | MsgWarning | MsgResult);
        readValue(stream);
    }
    g_ostrm << " " << description() << "\n";
    if (m_readable && stream.m_source == rkIStream::FromConsole && c_out.m_file) fflush(c_out.m_file);
    g_ostrm.setOutLevel(level);
    return stream;
}

void rkParameter::translate(rkString) {}
