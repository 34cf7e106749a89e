// What is wrong with a catalogue. Every finding is one line, `file:line: object.field: what`; all findings of
// a run are collected and told together.
#pragma once

#include <string>
#include <vector>

namespace pdgen {

// A place in a catalogue file. Line 0 stands for the file as a whole.
struct Place {
    std::string file;
    unsigned line = 0;
};

// "file:line"
std::string at(const Place &place);

class Diagnostics {
public:
    // `subject` is the object and field that is wrong, such as "l2Lookup.handle"; it may be empty.
    void add(const Place &place, const std::string &subject, const std::string &what);

    bool empty() const { return findings.empty(); }

    // The lines, by file and line.
    std::vector<std::string> lines() const;

private:
    struct Finding {
        Place place;
        std::string text;
    };
    std::vector<Finding> findings;
};

} // namespace pdgen
