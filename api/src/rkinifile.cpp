// rkinifile.cpp - sections and keys of a text file.

#include "rkinifile.h"

#include <sys/stat.h>

#include "rkstream.h"

static char const noValue[] = "~~~";

// ---- sections and values ------------------------------------------------------

rkValueItem *rkValues::exist(rkString name) const {
    for (rkValueItem *item : *this) {
        if (item->name == name) return item;
    }
    return nullptr;
}

rkSectionItem *rkSections::exist(rkString name) const {
    for (rkSectionItem *item : *this) {
        if (item->name == name) return item;
    }
    return nullptr;
}

static rkSectionItem *appendSection(rkSections &sections, rkString const &name) {
    rkSectionItem *section = new rkSectionItem{name, new rkValues};
    sections.push_back(section);
    return section;
}

static rkValueItem *appendValue(rkValues &values, rkString const &key, rkString const &value,
                                rkString const &comment) {
    rkValueItem *item = new rkValueItem{key, value, comment};
    values.push_back(item);
    return item;
}

static void deleteSection(rkSectionItem *section) {
    for (rkValueItem *item : *section->values) delete item;
    delete section->values;
    delete section;
}

// ---- reading ------------------------------------------------------------------

namespace {

// Finds items by name while a file is read: walking the lists for each line would take minutes for a file of
// some hundred thousand keys. The scope tells keys of different sections apart.
template <class Item>
class NameIndex {
public:
    NameIndex() : m_slots(new Slot[64]()), m_size(64), m_used(0) {}
    ~NameIndex() { delete[] m_slots; }
    NameIndex(NameIndex const &) = delete;
    NameIndex &operator=(NameIndex const &) = delete;

    Item *find(void const *scope, rkString const &name) const { return slot(scope, name)->item; }
    // REQUIRES: the name is not there yet, and the item keeps its name as long as the index lives.
    void add(void const *scope, Item *item) {
        *slot(scope, item->name) = {scope, item};
        if (++m_used > m_size / 2) grow();
    }

private:
    struct Slot {
        void const *scope;
        Item *item;
    };

    // Fowler-Noll-Vo, 64 bits.
    static unsigned long long hash(void const *scope, rkString const &name) {
        unsigned long long h = 14695981039346656037ull ^ reinterpret_cast<unsigned long long>(scope);
        for (char const *c = name.c_str(); *c; ++c) {
            h = (h ^ static_cast<unsigned char>(*c)) * 1099511628211ull;
        }
        return h ^ (h >> 32);
    }
    Slot *slot(void const *scope, rkString const &name) const {
        unsigned long long i = hash(scope, name) & (m_size - 1);
        while (m_slots[i].item && !(m_slots[i].scope == scope && m_slots[i].item->name == name)) {
            i = (i + 1) & (m_size - 1);
        }
        return &m_slots[i];
    }
    void grow() {
        Slot *old = m_slots;
        unsigned oldSize = m_size;
        m_size *= 2;
        m_slots = new Slot[m_size]();
        for (unsigned i = 0; i < oldSize; ++i) {
            if (old[i].item) *slot(old[i].scope, old[i].item->name) = old[i];
        }
        delete[] old;
    }

    Slot *m_slots;   // open addressing
    unsigned m_size; // a power of two
    unsigned m_used;
};

class IniReader {
public:
    explicit IniReader(rkIniFile &file);
    void takeLine(rkString line);

private:
    void enterSection(rkString name);
    void takeValue(rkString key, rkString const &value);

    rkIniFile &m_file;
    NameIndex<rkSectionItem> m_sectionIndex;
    NameIndex<rkValueItem> m_valueIndex;
    rkSectionItem *m_section; // null in front of the first section
};

IniReader::IniReader(rkIniFile &file) : m_file(file), m_section(nullptr) {
    for (rkSectionItem *section : m_file.m_sections) {
        m_sectionIndex.add(nullptr, section);
        for (rkValueItem *item : *section->values) m_valueIndex.add(section, item);
    }
}

void IniReader::enterSection(rkString name) {
    name.trim();
    m_section = m_sectionIndex.find(nullptr, name);
    if (m_section) return;
    m_section = appendSection(m_file.m_sections, name);
    m_sectionIndex.add(nullptr, m_section);
}

void IniReader::takeValue(rkString key, rkString const &value) {
    key.trim();
    if (!m_section || key.length() == 0) return;
    if (rkValueItem *item = m_valueIndex.find(m_section, key)) {
        item->value = value;
    } else {
        m_valueIndex.add(m_section, appendValue(*m_section->values, key, value, ""));
    }
}

void IniReader::takeLine(rkString line) {
    int comment = line.find("//");
    if (comment != rkString::npos) line = line.substr(0, comment);
    line.trim();
    if (line.length() == 0) return;
    rkString name, value;
    if (m_file.getSection(line, name)) {
        enterSection(name);
    } else if (m_file.getValue(line, name, value)) {
        value.trim();
        takeValue(name, value);
    }
}

} // namespace

rkIniFile::rkIniFile() : m_fileName(""), m_writable(false) {}

rkIniFile::~rkIniFile() {
    close();
}

// Such a file may never end, and holds no parameters: it is read as an empty one.
static bool isDevice(FILE *file) {
    struct stat status;
    return fstat(fileno(file), &status) == 0 && S_ISCHR(status.st_mode);
}

bool rkIniFile::open(rkString name, bool write) {
    m_fileName = name;
    m_writable = write;
    i_stream file(name, io_stream::Read | io_stream::AsIs, !write);
    if (file.m_file) {
        if (isDevice(file.m_file)) return true;
        IniReader reader(*this);
        rkString line;
        while (file.getline(line)) reader.takeLine(line);
        return true;
    }
    if (!write) return false;
    o_stream created(name, io_stream::Write | io_stream::AsIs, true);
    m_writable = created.m_file != nullptr;
    return m_writable;
}

bool rkIniFile::getSection(rkString line, rkString &name) {
    int open = line.find("[");
    if (open == rkString::npos) return false;
    int close = line.find("]", open);
    if (close == rkString::npos) return false;
    name = line.substr(open + 1, close - open - 1);
    return true;
}

bool rkIniFile::getValue(rkString line, rkString &key, rkString &value) {
    int equals = line.find("=");
    if (equals == rkString::npos) {
        key = line;
        value = noValue;
    } else {
        key = line.substr(0, equals);
        value = line.substr(equals + 1);
    }
    return true;
}

// ---- writing ------------------------------------------------------------------

static void writeItem(o_stream &file, rkValueItem const &item) {
    file << item.name;
    if (item.value != noValue) {
        file << "=" << item.value;
        if (item.comment.length() > 0) file << "\t// " << item.comment;
    }
    file << "\n";
}

void rkIniFile::updateFile() {
    if (!m_writable) return;
    o_stream file(m_fileName, io_stream::Write | io_stream::AsIs, true);
    if (!file.m_file) return;
    for (rkSectionItem *section : m_sections) {
        file << "\n[" << section->name << "]\n";
        for (rkValueItem *item : *section->values) writeItem(file, *item);
    }
}

void rkIniFile::close() {
    updateFile();
    m_writable = false;
    for (rkSectionItem *section : m_sections) deleteSection(section);
    m_sections.clear();
}

// ---- access -------------------------------------------------------------------

bool rkIniFile::sectionExist(rkString section) const {
    return m_sections.exist(section) != nullptr;
}

bool rkIniFile::valueExist(rkString section, rkString key) const {
    rkValues *values = getSectionValues(section);
    return values && values->exist(key);
}

rkString rkIniFile::read(rkString section, rkString key, rkString defaultValue) const {
    key.trim();
    rkValues *values = getSectionValues(section);
    rkValueItem *item = values ? values->exist(key) : nullptr;
    return item ? item->value : defaultValue;
}

void rkIniFile::write(rkString section, rkString key, rkString value, rkString comment) {
    rkSectionItem *item = m_sections.exist(section);
    if (!item) item = appendSection(m_sections, section);
    key.trim();
    if (key.length() == 0) return;
    if (rkValueItem *present = item->values->exist(key)) {
        present->value = value;
    } else {
        appendValue(*item->values, key, value, comment);
    }
}

void rkIniFile::write(rkString section, rkString key) {
    write(section, key, noValue, "");
}

void rkIniFile::write(rkString section) {
    write(section, "");
}

rkValues *rkIniFile::getSectionValues(rkString section) const {
    rkSectionItem *item = m_sections.exist(section);
    return item ? item->values : nullptr;
}

void rkIniFile::eraseSection(rkString section) {
    for (rkSections::iterator item = m_sections.begin(); item != m_sections.end(); ++item) {
        if ((*item)->name != section) continue;
        deleteSection(*item);
        m_sections.erase(item);
        return;
    }
}

void rkIniFile::deleteKey(rkString section, rkString key) {
    rkValues *values = getSectionValues(section);
    if (!values) return;
    for (rkValues::iterator item = values->begin(); item != values->end(); ++item) {
        if ((*item)->name != key) continue;
        delete *item;
        values->erase(item);
        return;
    }
}
