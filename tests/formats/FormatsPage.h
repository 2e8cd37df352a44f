#pragma once

#include <fstream>
#include <map>
#include <regex>

#include "tests/Testing.h"

/// A section of docs/formats.md, as far as a program can read it.
struct FormatsPage {
    using Facts = std::map<std::string, std::string>;

    /// The section of that heading; empty when there is none.
    explicit FormatsPage(const std::string& heading) {
        const std::regex row(R"(\| `(.*?)` \| `?(.*?)`? \|.*)");
        std::ifstream page(QUILLON_FORMATS_PAGE);
        std::string line, example, emptyLines;
        std::smatch cells;
        while (std::getline(page, line) && line != "## " + heading) {
        }
        while (std::getline(page, line) && !line.starts_with("## ")) {
            if (std::regex_match(line, cells, row)) facts[cells[1]] = cells[2];
            if (line.starts_with("    ")) {
                example += std::exchange(emptyLines, "") + line.substr(4) + "\r\n";
            } else if (line.empty() && !example.empty()) {
                emptyLines += "\r\n";
            } else if (!example.empty()) {
                examples.push_back(std::exchange(example, ""));
                emptyLines.clear();
            }
        }
    }

    /// Of the rows of its tables whose first cell is a name in backticks: the name, and the cell behind it.
    Facts facts;
    /// Its indented blocks, their lines ended by CR LF.
    std::vector<std::string> examples;
};
