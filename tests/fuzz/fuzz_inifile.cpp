// fuzz_inifile.cpp - reads any file as an ini file, writes it and reads it again, and edits it.
// Input: the file; behind a line "~~~~", a line for each edit: kind and value, section, key, separated by
// "|".

#include <algorithm>

#include "fuzz.h"
#include "rkinifile.h"

namespace {

struct Value {
    std::string key, value;
    bool operator==(Value const &other) const { return key == other.key && value == other.value; }
};

struct Section {
    std::string name;
    std::vector<Value> values;
    bool operator==(Section const &other) const { return name == other.name && values == other.values; }
};

using Content = std::vector<Section>;

Content contentOf(rkIniFile const &file) {
    Content content;
    for (rkSectionItem *section : file.m_sections) {
        content.push_back({str(section->name), {}});
        for (rkValueItem *item : *section->values) {
            content.back().values.push_back({str(item->name), str(item->value)});
        }
    }
    return content;
}

std::string trimmed(std::string const &text) {
    rkString copy = rk(text);
    copy.trim();
    return str(copy);
}

// ---- the format, told once more ---------------------------------------------------

Section *find(Content &content, std::string const &name) {
    auto at = std::find_if(content.begin(), content.end(), [&](Section &s) { return s.name == name; });
    return at == content.end() ? nullptr : &*at;
}

Value *find(Section &section, std::string const &key) {
    auto at =
        std::find_if(section.values.begin(), section.values.end(), [&](Value &v) { return v.key == key; });
    return at == section.values.end() ? nullptr : &*at;
}

void modelWrite(Content &content, std::string const &name, std::string const &key, std::string const &value) {
    if (!find(content, name)) content.push_back({name, {}});
    Section &section = *find(content, name);
    if (key.empty()) return;
    if (Value *present = find(section, key)) {
        present->value = value;
    } else {
        section.values.push_back({key, value});
    }
}

Content modelRead(FuzzInput input) {
    Content content;
    std::string section;
    while (!input.empty()) {
        std::string line = input.line();
        line = trimmed(line.substr(0, line.find("//")));
        size_t open = line.find('['), equals = line.find('=');
        size_t close = line.find(']', open);
        if (open != std::string::npos && close != std::string::npos) {
            section = trimmed(line.substr(open + 1, close - open - 1));
            modelWrite(content, section, "", "");
        } else if (!content.empty() && !line.empty()) {
            std::string value = equals == std::string::npos ? "~~~" : trimmed(line.substr(equals + 1));
            modelWrite(content, section, trimmed(line.substr(0, equals)), value);
        }
    }
    return content;
}

// ---- what a file read from text is like -----------------------------------------

void checkRead(rkIniFile const &file, Content const &content) {
    for (Section const &section : content) {
        require(section.name == trimmed(section.name), "names are trimmed", section.name);
        require(file.sectionExist(rk(section.name)), "a section is found", section.name);
        for (Value const &item : section.values) {
            require(!item.key.empty() && item.key == trimmed(item.key), "keys are trimmed", item.key);
            require(item.value.find("//") == std::string::npos, "no value holds a comment", item.value);
            require(file.valueExist(rk(section.name), rk(item.key)), "a key is found", item.key);
            require(str(file.read(rk(section.name), rk(item.key), "none")) == item.value,
                    "a value reads as the list has it", item.key);
        }
    }
}

// What was read, put into another file key by key, is there again when that file is opened.
void checkCopy(Content const &content) {
    MemoryFile target("");
    {
        rkIniFile copy;
        require(copy.open(target.path(), true), "an empty file opens");
        for (Section const &section : content) {
            copy.write(rk(section.name));
            for (Value const &item : section.values) {
                copy.write(rk(section.name), rk(item.key), rk(item.value), "");
            }
        }
        copy.updateFile();
    }
    rkIniFile again;
    require(again.open(target.path(), false), "the copy opens");
    require(contentOf(again) == content, "a copy holds the same", target.content());
}

// Closing a writable file rewrites it, and the second time as the first.
void checkRewrite(std::string const &text, Content const &content) {
    MemoryFile file(text);
    std::string written;
    for (int turn = 0; turn < 2; ++turn) {
        rkIniFile ini;
        require(ini.open(file.path(), true), "a file opens to be written");
        require(contentOf(ini) == content, "the rewritten file holds the same", text);
        ini.close();
        require(ini.m_sections.empty(), "a closed file is empty");
        if (turn == 1) require(file.content() == written, "a second rewriting changes nothing", text);
        written = file.content();
    }
}

// ---- edits ------------------------------------------------------------------------

template <class List, class Item>
void modelErase(List &list, Item *item) {
    if (item) list.erase(list.begin() + (item - list.data()));
}

void edit(rkIniFile &file, Content &content, std::string const &line) {
    rkString kind, name, key;
    rkString(line.c_str()).parse(kind, name, key, "|");
    std::string section = str(name);
    switch (kind[0]) {
        case 'w':
            file.write(name, key, kind, "a comment");
            modelWrite(content, section, trimmed(str(key)), str(kind));
            break;
        case 'k':
            file.write(name, key);
            modelWrite(content, section, trimmed(str(key)), "~~~");
            break;
        case 's':
            file.write(name);
            modelWrite(content, section, "", "");
            break;
        case 'e':
            file.eraseSection(name);
            modelErase(content, find(content, section));
            break;
        case 'd':
            file.deleteKey(name, key);
            if (Section *present = find(content, section)) {
                modelErase(present->values, find(*present, str(key)));
            }
            break;
    }
}

void checkEdits(std::string const &text, Content content, std::vector<std::string> const &edits) {
    MemoryFile file(text);
    rkIniFile ini;
    require(ini.open(file.path(), true), "a file opens to be edited");
    for (std::string const &line : edits) {
        edit(ini, content, cText(line));
        require(contentOf(ini) == content, "an edit does what it says", line);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    std::string text(reinterpret_cast<char const *>(data), size);
    static const std::string mark = "\n~~~~\n";
    std::vector<std::string> edits;
    size_t end = text.find(mark);
    if (end != std::string::npos) {
        edits = FuzzInput(data + end + mark.size(), size - end - mark.size()).lines();
        text.resize(end);
    }
    MemoryFile source(text);
    rkIniFile file;
    require(file.open(source.path(), false), "a file opens to be read");
    Content content = contentOf(file);
    // What stands behind a NUL is cut off by the reading of lines, in pieces that are no concern of the
    // format.
    bool plain = text.find('\0') == std::string::npos;
    if (plain) require(content == modelRead(FuzzInput(data, text.size())), "the format is kept", text);
    checkRead(file, content);
    file.close();
    require(source.content() == text, "reading leaves the file");
    checkCopy(content);
    checkRewrite(text, content);
    checkEdits(text, content, edits);
    return 0;
}
