#include "tests/formats/FormatsPage.h"

#include <fstream>
#include <utility>

namespace {

// Without the blanks and backticks around it.
std::string Trim(const std::string& cell) {
    const std::size_t start = cell.find_first_not_of(" `");
    return start == cell.npos ? "" : cell.substr(start, cell.find_last_not_of(" `") + 1 - start);
}

void AddRow(const std::string& line, FormatsPage::Facts& facts) {
    const std::size_t second = line.find(" | ");
    const std::size_t third = line.find(" |", second + 3);
    if (third == line.npos) return;
    facts[Trim(line.substr(2, second - 2))] = Trim(line.substr(second + 3, third - second - 3));
}

}  // namespace

FormatsPage::FormatsPage(const std::string& heading) {
    std::ifstream page(QUILLON_FORMATS_PAGE);
    std::string line;
    while (std::getline(page, line) && line != "## " + heading) {
    }
    std::string example;
    std::string emptyLines;
    while (std::getline(page, line) && !line.starts_with("## ")) {
        if (line.starts_with("| `")) AddRow(line, facts);
        if (line.starts_with("    ")) {
            example += emptyLines + line.substr(4) + "\r\n";
            emptyLines.clear();
        } else if (line.empty() && !example.empty()) {
            emptyLines += "\r\n";
        } else if (!example.empty()) {
            examples.push_back(std::exchange(example, ""));
            emptyLines.clear();
        }
    }
}
