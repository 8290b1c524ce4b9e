#include "Report.h"

#include <algorithm>
#include <cstdio>
#include <map>

namespace bench {
namespace {

std::string Printed(char const *format, double value) {
    char text[32];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

std::string Short(double value, char const *unit) {
    return Printed(value < 9.995 ? "%.2f " : value < 99.95 ? "%.1f " : "%.0f ", value) + unit;
}

std::string LowerCase(std::string text) {
    for (char &c : text)
        if (c >= 'A' && c <= 'Z')
            c = static_cast<char>(c - 'A' + 'a');
    return text;
}

} // namespace

std::string Row::Ratio() const {
    char const *const word = against == Against::Rival ? "x" : "times";
    if (Value() >= 0.0995)
        return Short(Value(), word);
    return Printed(Value() < 0.001 ? "%.5f " : "%.2g ", Value()) + word;
}

std::string Row::Verdict() const {
    if (target <= 0)
        return "";
    return (against == Against::Rival ? ">= " : "<= ") + Printed("%g", target) +
           (Met() ? ": met" : ": MISSED");
}

std::string Format(double value, Unit unit) {
    if (unit == Unit::Bytes && value < 1e3)
        return Printed("%.0f B", value);
    if (unit == Unit::Bytes)
        return value < 1e6 ? Short(value / 1e3, "kB") : Short(value / 1e6, "MB");
    if (value >= 1)
        return Short(value, "s");
    if (value >= 1e-3)
        return Short(value * 1e3, "ms");
    return value >= 1e-6 ? Short(value * 1e6, "us") : Short(value * 1e9, "ns");
}

std::string WithCommas(std::uint64_t number) {
    std::string text = std::to_string(number);
    for (std::size_t at = text.size(); at > 3;)
        text.insert(at -= 3, ",");
    return text;
}

double Median(std::vector<double> values) {
    std::sort(values.begin(), values.end());
    std::size_t const middle = values.size() / 2;
    return values.size() % 2 == 1 ? values[middle] : (values[middle - 1] + values[middle]) / 2;
}

Table::Table(std::vector<Column> columns, bool markdown)
    : m_columns(std::move(columns)), m_markdown(markdown) {
    std::vector<std::string> titles;
    for (Column const &column : m_columns)
        titles.push_back(column.title);
    Print(titles);
    if (!m_markdown)
        return;
    for (Column const &column : m_columns)
        std::printf(column.left ? "|---" : "|--:");
    std::printf("|\n");
}

void Table::Add(std::vector<std::string> const &cells) const { Print(cells); }

void Table::Print(std::vector<std::string> const &cells) const {
    for (std::size_t i = 0; i < cells.size(); ++i) {
        int const width = m_columns[i].left ? -m_columns[i].width : m_columns[i].width;
        if (m_markdown)
            std::printf("| %s ", cells[i].c_str());
        else
            std::printf("%*s  ", width, cells[i].c_str());
    }
    std::printf(m_markdown ? "|\n" : "\n");
    std::fflush(stdout);
}

void PrintLines(std::vector<std::string> const &lines, bool markdown) {
    for (std::string const &line : lines)
        std::printf("%s%s\n", markdown ? "- " : "", line.c_str());
    std::printf("\n");
}

Report::Report(bool markdown, std::string const &sizes)
    : m_markdown(markdown), m_sizes(LowerCase(sizes)), m_table({{sizes, 9, false},
                                                                {"Workload", 46, true},
                                                                {"QVLinkDB", 8, false},
                                                                {"Against", 32, true},
                                                                {"takes", 8, false},
                                                                {"Ratio", 11, false},
                                                                {"Target", 14, true}},
                                                               markdown) {}

void Report::Add(Row const &row) {
    m_rows.push_back(row);
    m_table.Add({WithCommas(row.objects), row.workload, Format(row.ours, row.unit), row.baseline,
                 Format(row.theirs, row.unit), row.Ratio(), row.Verdict()});
}

void Report::PrintGrowth() const {
    std::vector<std::string> workloads;
    std::map<std::string, std::map<std::uint32_t, std::string>> figures;
    std::map<std::uint32_t, Column> sizes;
    for (Row const &row : m_rows) {
        if (figures.count(row.workload) == 0)
            workloads.push_back(row.workload);
        figures[row.workload][row.objects] = Format(row.ours, row.unit);
        sizes[row.objects] = {WithCommas(row.objects), 10, false};
    }
    std::vector<Column> columns = {{"QVLinkDB by number of " + m_sizes, 46, true}};
    for (auto const &[objects, column] : sizes)
        columns.push_back(column);
    std::printf("\n");
    Table const table(columns, m_markdown);
    for (std::string const &workload : workloads) {
        std::vector<std::string> cells = {workload};
        for (auto const &[objects, column] : sizes)
            cells.push_back(figures[workload][objects]);
        table.Add(cells);
    }
}

void Report::PrintSummary() const {
    auto const asked =
        std::count_if(m_rows.begin(), m_rows.end(), [](Row const &row) { return row.target > 0; });
    auto const met = std::count_if(m_rows.begin(), m_rows.end(),
                                   [](Row const &row) { return row.target > 0 && row.Met(); });
    if (asked == 0)
        return;
    std::vector<std::string> lines = {std::to_string(met) + " of " + std::to_string(asked) +
                                      " targets met"};
    for (Row const &row : m_rows)
        if (row.target > 0 && !row.Met())
            lines.push_back("missed: " + WithCommas(row.objects) + " " + m_sizes + ", " +
                            row.workload + " against " + row.baseline + ": " + row.Ratio() + " (" +
                            row.Verdict() + ")");
    std::printf("\n");
    PrintLines(lines, m_markdown);
}

} // namespace bench
