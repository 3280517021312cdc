// fuzz_words.cpp - the word splitter, the conversions and the searches of strings on any text.
// Input: a line of separators, then the text.

#include <string.h>

#include "fuzz.h"
#include "rkparse.h"

namespace {

// ---- the splitter, told once more ----------------------------------------------

// Says the rules one by one, without regard to cost.
class Splitter {
public:
    Splitter(std::string text, std::string separators)
        : m_text(std::move(text)),
          m_separators(std::move(separators)),
          m_quote(m_separators.find('"') == std::string::npos ? -1 : -100) {}

    std::vector<std::string> words() {
        std::vector<std::string> all;
        for (int i = 0; start(i);) all.push_back(word(i));
        return all;
    }

private:
    bool separates(int i) {
        char c = m_text[i];
        if (m_quote < 0) {
            bool opens = m_quote == -1 && c == '"';
            if (opens) m_quote = i;
            return !opens && m_separators.find(c) != std::string::npos;
        }
        if (c == '"') m_quote = m_quote == i - 1 ? 0 : -1;
        return false;
    }
    bool start(int &i) {
        int end = static_cast<int>(m_text.size());
        while (i < end && separates(i)) ++i;
        return i < end;
    }
    std::string word(int &i) {
        int begin = i, end = static_cast<int>(m_text.size());
        while (i < end && !separates(i)) ++i;
        std::string word = m_text.substr(begin, i - begin);
        while (m_quote >= -1 && word.find("\"\"") != std::string::npos) word.erase(1, 1);
        return word;
    }

    std::string m_text, m_separators;
    int m_quote;
};

void checkSplit(std::string const &text, std::string const &separators) {
    rkStringList list;
    int n = rk(text).parse(list, rk(separators));
    std::vector<std::string> words = listed(list);
    require(n == static_cast<int>(words.size()), "the number of words is the size of the list", text);
    require(words == Splitter(text, separators).words(), "the words are those of the rules", text);
    for (std::string const &word : words) require(!word.empty(), "no word is empty", text);
    rkString out[3] = {"x", "y", "z"};
    require(rk(text).parse(out[0], out[1], out[2], rk(separators)) == n, "three outputs, same count", text);
    words.resize(3);
    for (int i = 0; i < 3; ++i) require(str(out[i]) == words[i], "the outputs are the first words", text);
}

// The position moves on with each word and never leaves the text.
void checkProgress(std::string const &text, std::string const &separators) {
    rkParse parser(rk(text));
    parser.initParse(rk(separators));
    rkString word;
    for (int before = 0; parser.nextWord(word); before = parser.m_pos) {
        require(parser.m_pos > before && parser.m_pos <= parser.length(), "each word moves on", text);
        require(word.length() <= parser.m_pos - before, "a word is no longer than its piece", text);
    }
}

// ---- conversions --------------------------------------------------------------

bool isBlank(std::string const &text) {
    return strspn(text.c_str(), " \t\n\v\f\r") == strlen(text.c_str());
}

template <class T>
void checkNumber(std::string const &text) {
    rkString first = rk(text), second = rk(text);
    T a = T(11), b = T(22);
    a << first;
    b << second;
    require(first.failed() == second.failed(), "failure does not depend on the old value", text);
    if (first.failed() || isBlank(text)) require(a == T(11) && b == T(22), "no number, no change", text);
    if (isBlank(text)) require(!first.failed(), "blanks are no failure", text);
    if (first.failed()) return;
    // "0x" and a lone sign are told apart from numbers by the scan alone: it may read nothing without a
    // failure.
    if (a == T(11) && b == T(22)) return;
    require(a == b || (a != a && b != b), "a number does not depend on the old value", text);
}

template <class T>
void checkRoundTrip(std::string const &bytes) {
    T n = 0, back = 1;
    memcpy(&n, bytes.data(), bytes.size() < sizeof n ? bytes.size() : sizeof n);
    rkString text("");
    text << n;
    back << text;
    require(!text.failed() && back == n, "a printed number reads as itself", str(text));
}

void checkConversions(std::string const &text) {
    checkNumber<int>(text);
    checkNumber<long long>(text);
    checkNumber<double>(text);
    checkNumber<float>(text);
    checkRoundTrip<int>(text);
    checkRoundTrip<long long>(text);
    bool value = true;
    rkString word = rk(text);
    value << word;
    require(!(value && word.failed()), "a text that is no answer reads as no", text);
}

// ---- searches and parts ---------------------------------------------------------

int indexOf(size_t found) {
    return found == std::string::npos ? rkString::npos : static_cast<int>(found);
}

void checkSearches(std::string const &text, std::string const &part) {
    require(rk(text).find(rk(part)) == indexOf(text.find(part)), "find finds the first", text);
    require(rk(text).rfind(rk(part)) == indexOf(text.rfind(part)), "rfind finds the last", text);
    int order = rk(text).compare(rk(part)), back = rk(part).compare(rk(text));
    require((order < 0) == (back > 0) && (order == 0) == (text == part), "compare is an order", text);
    if (fitString(rk(part), rk(text), 0)) require(part.size() <= text.size(), "a part fits", text);
    require(fitString(rk(part), rk(part + text), 0), "the start of a name fits", part);
}

void checkParts(std::string const &text) {
    rkString path = rk(text);
    require(str(path.getFileDir()) + str(path.getFileName()) == text, "directory and name are all", text);
    require(str(path.getFileName()).rfind(str(path.getFileTitle()), 0) == 0, "the title starts it", text);
    rkString trimmed = path;
    trimmed.trim();
    require(text.find(str(trimmed)) != std::string::npos, "trim only cuts", text);
    rkString twice = trimmed;
    twice.trim();
    require(str(twice) == str(trimmed), "what is trimmed stays", text);
    require(str(path.toLower().toLower()) == str(path.toLower()), "lower case stays", text);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(uint8_t const *data, size_t size) {
    FuzzInput input(data, size);
    std::string separators = cText(input.line());
    std::string text = input.rest();
    checkSplit(text, separators);
    checkProgress(text, separators);
    text = cText(text);
    checkConversions(text);
    checkSearches(text, separators);
    checkParts(text);
    return 0;
}
