// Where answers for people go: colour and aligned columns on a terminal, bare text with
// tabs between the columns elsewhere.
#pragma once

#include <cstdint>
#include <iosfwd>
#include <string>
#include <string_view>
#include <vector>

namespace qvlink {

enum class Colour { none, strong, dim, good, bad };

class Screen {
public:
    // On a terminal names are escaped; `colour` then says whether it may be coloured too.
    Screen(std::ostream &out, bool terminal, bool colour)
        : m_out(out), m_terminal(terminal), m_colour(terminal && colour) {}

    bool IsForTerminal() const { return m_terminal; }
    std::ostream &Out() { return m_out; }

    // The text with control characters, and bytes that aren't UTF-8, as \n, \x1b and so on
    // on a terminal; as it stands elsewhere.
    std::string Safe(std::string_view text) const;
    // The same for a text of several lines, which it stays.
    std::string SafeLines(std::string_view text) const;
    std::string Painted(std::string const &text, Colour colour) const;
    void Line(std::string const &text);

private:
    std::ostream &m_out;
    bool m_terminal;
    bool m_colour;
};

// Rows of cells, aligned on a terminal. The cells are escaped as they are put in.
class Table {
public:
    explicit Table(Screen &screen) : m_screen(screen) {}
    struct Cell {
        std::string text;
        Colour colour = Colour::none;
        bool right = false; // aligned at its right side
    };
    void Row(std::vector<Cell> cells);
    void Print(std::size_t indent = 0);

private:
    Screen &m_screen;
    std::vector<std::vector<Cell>> m_rows;
};

std::string Escape(std::string_view text);
std::size_t CharactersIn(std::string_view utf8);
std::string ReadableSize(std::uint64_t bytes);   // "1.2 MiB"
std::string ReadableCount(std::uint64_t number); // "12,345"

} // namespace qvlink
