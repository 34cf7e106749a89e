#include "diagnostics.h"

#include <algorithm>
#include <tuple>

namespace pdgen {

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
        lines.push_back(line.append(": ").append(finding.text));
    }
    return lines;
}

} // namespace pdgen
