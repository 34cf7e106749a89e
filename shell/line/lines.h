// Where command lines come from: a file or pipe, or a person at a terminal.
#pragma once

#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "complete.h"
#include "descriptor.h"
#include "progress.h"

namespace shell {

inline constexpr std::size_t longest_line = std::size_t{64} << 20;

class LineSource {
public:
    virtual ~LineSource() = default;
    // False at the end. Throws std::runtime_error when reading fails, and Interrupted.
    virtual bool next(std::string &line) = 0;
    // Tells where the names of members and groups come from while lines are typed.
    virtual void complete_with(const ObjectNames &) {}
    // Called before something else goes to the terminal.
    virtual void make_room() {}
};

// What can be read from a descriptor, which stays open.
class DescriptorLines : public LineSource {
public:
    explicit DescriptorLines(int descriptor) : descriptor_(descriptor) {}

    bool next(std::string &line) override;

private:
    bool refill();

    const int descriptor_;
    std::vector<char> buffer_;
    std::size_t at_ = 0, end_ = 0; // what is left in it
    u64 number_ = 0;               // of the line
};

// The lines of a text. What takes long shows its progress on `terminal`, unless that is null.
class TextLines : public LineSource {
public:
    explicit TextLines(std::string text, std::ostream *terminal = nullptr);

    bool next(std::string &line) override;
    void make_room() override;

private:
    std::string text_;
    std::size_t at_ = 0;
    std::optional<Progress> progress_;
};

// All that is left of the lines.
std::string text_of(LineSource &source);

// The lines of a file. A long one shows its progress on `terminal`, unless that is null.
// Throws std::runtime_error when it cannot be opened.
class FileLines : public LineSource {
public:
    FileLines(const std::string &name, std::ostream *terminal);

    bool next(std::string &line) override;
    void make_room() override;

private:
    Descriptor file_;
    std::optional<DescriptorLines> lines_;
    std::optional<Progress> progress_;
};

} // namespace shell
