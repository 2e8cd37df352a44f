#pragma once

#include <map>
#include <string>
#include <vector>

/// A section of docs/formats.md, as far as a program can read it.
struct FormatsPage {
    using Facts = std::map<std::string, std::string>;

    /// The section of that heading; empty when there is none.
    explicit FormatsPage(const std::string& heading);

    /// Of the rows of its tables whose first cell is a name in backticks: the name, and the cell behind it.
    Facts facts;
    /// Its indented blocks, their lines ended by CR LF.
    std::vector<std::string> examples;
};
