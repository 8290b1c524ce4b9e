#include "string_program.h"

#include <sstream>

#include "open_string.h"
#include "string_model.h"

namespace {

constexpr std::size_t longest = 400; // what a text may grow to
constexpr std::size_t mostStrings = 12;

class Program {
public:
    Program(const std::uint8_t *data, std::size_t size) : m_next(data), m_end(data + size) {}

    std::string Run() {
        while (m_next != m_end && m_difference.empty()) {
            unsigned const operation = Number(16);
            unsigned const group = operation % 4;
            std::uint8_t const which = Byte();
            if (group == 0)
                Edit(which % 13);
            else if (group == 1)
                Select(which % 9);
            else if (group == 2)
                Look(which % 10);
            else
                Replace(which % 7);
            CompareState(operation * 100 + which);
        }
        return m_difference;
    }

private:
    const std::uint8_t *m_next;
    const std::uint8_t *m_end;
    OpenString m_string;
    StringModel m_model;
    std::string m_difference;

    std::uint8_t Byte() { return m_next == m_end ? std::uint8_t{0} : *m_next++; }
    unsigned Number(unsigned limit) { return Byte() % limit; }
    unsigned long Position() { return Number(static_cast<unsigned>(m_model.Size()) + 1); }

    // Few letters, so that parts of texts meet.
    std::string Text(unsigned limit = 6) {
        static char const letters[] = {'a', 'b', 'A', ',', '_', 'c', '\x80', 'B'};
        std::string text;
        for (unsigned left = Number(limit); left != 0; --left)
            text += letters[Byte() % sizeof letters];
        return text;
    }

    template <class A, class B> void Expect(A const &got, B const &wanted, char const *what) {
        if (got == wanted || !m_difference.empty())
            return;
        std::ostringstream out;
        out << what << ": " << got << " instead of " << wanted;
        m_difference = out.str();
    }

    void CompareState(unsigned operation) {
        Expect(TextOf(m_string), m_model.Text(), "text");
        Expect(*(m_string.Retrieve() + m_string.size()), '\0', "terminator");
        Expect(m_string.stringCount, m_model.strings.size(), "strings");
        for (unsigned long i = 0; m_difference.empty() && i < m_string.stringCount; ++i)
            Expect(std::string(m_string.GetStringNumber(i)),
                   text_model::UpToNul(m_model.strings[i]), "string");
        Expect(m_string.currentString, m_model.current, "selection");
        Expect(m_string.findIndex, m_model.findIndex, "find cursor");
        Expect(m_string.parseIndex, m_model.parseIndex, "parse cursor");
        Expect(m_string.fastParseFound, m_model.fastParseFound, "fast parse found");
        Expect(m_string.fastParseStart, m_model.fastParseStart, "fast parse start");
        Expect(m_string.lastReplaceIndex, m_model.lastReplaceIndex, "last replacement");
        Expect(m_string.matchStyle, m_model.matchStyle, "match style");
        Expect(m_string.caseMode, m_model.caseMode, "case");
        if (!m_difference.empty())
            m_difference += " after operation " + std::to_string(operation);
        if (m_model.Size() > longest) {
            m_string.Erase();
            m_model.Text().clear();
        }
    }

    void Edit(unsigned which) {
        std::string const text = Text();
        std::string &mine = m_model.Text();
        unsigned long const at = Position();
        unsigned long const count = Number(static_cast<unsigned>(m_model.Size() - at) + 1);
        switch (which) {
        case 0:
            m_string.Append(text);
            mine += text;
            break;
        case 1:
            m_string += text.c_str();
            mine += text;
            break;
        case 2:
            m_string = text;
            mine = text;
            break;
        case 3:
            m_string += m_string.c_str() + at;
            mine += text_model::UpToNul(mine.substr(at));
            break;
        case 4:
            m_string = m_string.c_str() + at;
            mine = text_model::UpToNul(mine.substr(at));
            break;
        case 5:
            m_string.Insert(text, at);
            mine = text_model::Inserted(mine, text, at);
            break;
        case 6:
            m_string.Replace(text, at);
            mine = text_model::Overwritten(mine, text, at);
            break;
        case 7:
            m_string.TruncateString(count);
            mine.resize(mine.size() - count);
            break;
        case 8:
            m_string.TruncateStringAtPosition(count, at);
            mine = text_model::Without(mine, count, at);
            break;
        default:
            EditWhole(which);
        }
    }

    void EditWhole(unsigned which) {
        std::string &mine = m_model.Text();
        switch (which) {
        case 9:
            m_string.Reverse();
            mine.assign(std::string(mine.rbegin(), mine.rend()));
            break;
        case 10: {
            std::uint8_t const key = Byte();
            m_string.XORString(key);
            m_model.Scramble(std::string(1, static_cast<char>(key)));
            break;
        }
        case 11: {
            std::string const key = Text() + 'k';
            m_string.EncryptString(UTILS::UtilsString(key));
            m_model.Scramble(key);
            break;
        }
        default:
            m_string.Erase();
            mine.clear();
        }
    }

    void Select(unsigned which) {
        auto const count = static_cast<unsigned>(m_model.strings.size());
        unsigned long const index = Number(count);
        switch (which) {
        case 0:
        case 1:
        case 2:
            if (count < mostStrings) {
                std::string const text = Text();
                m_string.AddString(text);
                m_model.strings.push_back(text);
            }
            break;
        case 3:
        case 4:
            m_string.SetCurrentString(index);
            m_model.current = index;
            break;
        case 5:
            if (count > 1) {
                m_string.RemoveString(index);
                m_model.RemoveString(index);
            }
            break;
        case 6:
            if (count > 1) {
                m_string.RemoveString();
                m_model.RemoveString();
            }
            break;
        default:
            SetUp(which);
        }
    }

    void SetUp(unsigned which) {
        if (which == 7) {
            m_model.caseMode = static_cast<int>(Number(2));
            m_model.matchStyle = static_cast<int>(Number(2));
            m_string.SetCase(m_model.caseMode);
            m_string.SetMatchStyle(m_model.matchStyle);
            return;
        }
        std::vector<std::string> texts(Number(4));
        for (std::string &text : texts)
            text = Text();
        m_string = texts;
        m_model.AssignAll(texts);
    }

    void Look(unsigned which) {
        std::string const text = Text(3);
        unsigned long index = 5;
        text_model::Hit hit{};
        switch (which) {
        case 0:
            hit = m_model.FindFirst(text);
            Expect(m_string.FindFirst(text, index), hit.found ? 1 : 0, "FindFirst");
            Expect(index, hit.index, "index");
            break;
        case 1:
            hit = m_model.FindNext(text);
            Expect(m_string.FindNext(text, index), hit.found ? 1 : 0, "FindNext");
            Expect(index, hit.index, "index");
            break;
        case 2:
            Expect(m_string.FindAll(text), m_model.FindAll(text) ? 1 : 0, "FindAll");
            break;
        case 3:
            index = Number(4);
            Expect(m_string.Search(text, index), m_model.Search(text, index).found ? 1 : 0,
                   "Search");
            break;
        case 4:
        case 5:
            CompareTexts();
            break;
        default:
            Parse(which, text);
        }
    }

    void CompareTexts() {
        std::string const other = Text();
        int const caseMode = m_model.caseMode;
        int const style = m_model.matchStyle;
        auto const kind = text_model::Kind::Text;
        Expect(m_string.Compare(other),
               text_model::Compare(kind, m_model.Text(), other, caseMode, style), "Compare");
        Expect(m_string.FriendCompare(other),
               text_model::Compare(kind, other, m_model.Text(), caseMode, style), "FriendCompare");
    }

    void ExpectPiece(int result, UTILS::UtilsString const &piece,
                     std::optional<std::string> const &wanted) {
        Expect(result, wanted ? 1 : 0, "parse");
        Expect(TextOf(piece), text_model::UpToNul(wanted.value_or("")), "piece");
    }

    void Parse(unsigned which, std::string const &separator) {
        UTILS::UtilsString piece("old");
        unsigned long const number = Number(4);
        bool const keepFront = Number(3) == 0;
        int result = 0;
        switch (which) {
        case 6:
            result = m_string.ParseString(separator, piece, number, keepFront);
            ExpectPiece(result, piece, m_model.Parse(separator, number, keepFront));
            break;
        case 7:
            m_model.parseIndex = number == 0 ? 0 : m_model.parseIndex + 1;
            result = number == 0 ? m_string.ParseFirstString(separator, piece)
                                 : m_string.ParseNextString(separator, piece, keepFront);
            ExpectPiece(result, piece,
                        m_model.Parse(separator, m_model.parseIndex, number != 0 && keepFront));
            break;
        case 8:
            result = m_string.ParseStringFast(separator, piece, number);
            ExpectPiece(result, piece, m_model.ParseFast(separator, number));
            break;
        default:
            result = number == 0 ? m_string.ParseFirstStringFast(separator, piece)
                                 : m_string.ParseNextStringFast(separator, piece);
            ExpectPiece(result, piece,
                        number == 0 ? m_model.ParseFirstFast(separator)
                                    : m_model.ParseNextFast(separator));
        }
    }

    void Replace(unsigned which) {
        std::string const find = Text(4);
        std::string const with = Text(4);
        switch (which) {
        case 0:
            Expect(m_string.ReplaceFirst(find, with), m_model.ReplaceFirst(find, with) ? 1 : 0,
                   "ReplaceFirst");
            break;
        case 1:
            Expect(m_string.ReplaceNext(find, with), m_model.ReplaceNext(find, with) ? 1 : 0,
                   "ReplaceNext");
            break;
        case 2:
        case 3: {
            StringModel after = m_model;
            std::optional<bool> const replaced = after.ReplaceAll(find, with);
            if (replaced && after.Size() <= longest) {
                m_model = after;
                Expect(m_string.ReplaceAll(find, with), *replaced ? 1 : 0, "ReplaceAll");
            }
            break;
        }
        case 4:
            if (m_model.strings.size() < mostStrings) {
                bool const append = Number(2) != 0;
                m_string.SplitData(UTILS::UtilsString(find), append ? 1 : 0);
                std::string const text = m_model.Text();
                m_model.SplitData(text, m_model.caseMode, find, append);
            }
            break;
        case 5: {
            OpenString const copy(m_string);
            m_string = find; // the copy is its own
            m_string = static_cast<UTILS::UtilsString const &>(copy);
            break;
        }
        default:
            m_string.FindReset();
            m_string.ParseReset();
            m_string.ParseFastReset();
            m_model.findIndex = m_model.parseIndex = 0;
            m_model.fastParseFound = m_model.fastParseStart = 0;
        }
    }
};

} // namespace

std::string RunStringProgram(const std::uint8_t *data, std::size_t size) {
    return Program(data, size).Run();
}
