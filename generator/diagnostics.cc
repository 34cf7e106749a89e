#include "diagnostics.h"

#include <algorithm>
#include <cctype>
#include <tuple>

namespace pdgen {

namespace {

// Text of the catalogue can hold line ends and other control characters.
std::string in_one_line(const std::string &text)
{
    constexpr char digits[] = "0123456789abcdef";
    std::string line;
    for (unsigned char c : text)
        if (std::iscntrl(c))
            line.append("\\x").append({digits[c / 16], digits[c % 16]});
        else
            line.push_back(static_cast<char>(c));
    return line;
}

} // namespace

std::string at(const Place &place)
{
    return place.file + ":" + std::to_string(place.line);
}

void Diagnostics::add(const Place &place, const std::string &subject, const std::string &what)
{
    findings.push_back({place, subject.empty() ? what : subject + ": " + what});
}

std::vector<std::string> Diagnostics::lines() const
{
    std::vector<Finding> sorted = findings;
    std::stable_sort(sorted.begin(), sorted.end(), [](const Finding &a, const Finding &b) {
        return std::tie(a.place.file, a.place.line) < std::tie(b.place.file, b.place.line);
    });
    std::vector<std::string> lines;
    for (const Finding &finding : sorted) {
        std::string line = finding.place.file;
        if (finding.place.line)
            line.append(":").append(std::to_string(finding.place.line));
        lines.push_back(in_one_line(line.append(": ").append(finding.text)));
    }
    return lines;
}

} // namespace pdgen
