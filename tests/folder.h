// A folder of its own below /tmp, which goes with it.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>
#include <string>

class Folder {
public:
    Folder()
    {
        std::string name = (std::filesystem::temp_directory_path() / "tessel.XXXXXX").string();
        if (!mkdtemp(name.data()))
            throw std::runtime_error{"no folder in " + name};
        path = name;
    }
    Folder(const Folder &) = delete;
    Folder &operator=(const Folder &) = delete;
    ~Folder() { std::filesystem::remove_all(path); }

    std::string file(const std::string &name) const { return path / name; }
    std::string write(const std::string &name, const std::string &text) const
    {
        std::ofstream{path / name} << text;
        return file(name);
    }
    std::string read(const std::string &name) const
    {
        std::ifstream in{path / name};
        return {std::istreambuf_iterator<char>{in}, {}};
    }

    std::filesystem::path path;
};
