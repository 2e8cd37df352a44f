#include "tests/formats/FormatsPage.h"

#include <fstream>
#include <regex>
#include <utility>

FormatsPage::FormatsPage(const std::string& heading) {
    const std::regex row(R"(\| `(.*?)` \| `?(.*?)`? \|.*)");
    std::ifstream page(QUILLON_FORMATS_PAGE);
    std::string line;
    std::smatch cells;
    while (std::getline(page, line) && line != "## " + heading) {
    }
    std::string example;
    std::string emptyLines;
    while (std::getline(page, line) && !line.starts_with("## ")) {
        if (std::regex_match(line, cells, row)) facts[cells[1]] = cells[2];
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
