// The tables of results, as aligned text or as Markdown.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace bench {

enum class Unit { Seconds, Bytes };

// A rival is to be beaten: the ratio tells how many times as fast we are. A limit is not to
// be exceeded too far: the ratio tells how many times as much we take.
enum class Against { Rival, Limit };

// One comparison.
struct Row {
    std::uint32_t objects; // or what else the sizes are
    std::string workload;
    Unit unit;
    double ours;
    Against against;
    std::string baseline;
    double theirs;
    double target; // what the ratio has to reach, or may reach; 0: nothing asked

    double Value() const { return against == Against::Rival ? theirs / ours : ours / theirs; }
    bool Met() const { return against == Against::Rival ? Value() >= target : Value() <= target; }
    std::string Ratio() const;
    std::string Verdict() const;
};

std::string Format(double value, Unit unit);
std::string WithCommas(std::uint64_t number);
double Median(std::vector<double> values);

struct Column {
    std::string title;
    int width;
    bool left; // texts stand left, numbers right
};

// Prints each row as soon as it is there.
class Table {
public:
    Table(std::vector<Column> columns, bool markdown);
    void Add(std::vector<std::string> const &cells) const;

private:
    void Print(std::vector<std::string> const &cells) const;

    std::vector<Column> m_columns;
    bool m_markdown;
};

// Lines of prose, as a list in Markdown.
void PrintLines(std::vector<std::string> const &lines, bool markdown);

class Report {
public:
    // `sizes` is what the first column counts, as its title.
    explicit Report(bool markdown, std::string const &sizes = "Objects");

    void Add(Row const &row);
    void PrintGrowth() const;  // our own figures by size, a line a workload
    void PrintSummary() const; // of the targets, if there are any

private:
    bool m_markdown;
    std::string m_sizes; // in lower case
    Table m_table;
    std::vector<Row> m_rows;
};

} // namespace bench
