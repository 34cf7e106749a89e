// The tables whose updates a session prints, through the update callbacks of the driver.
#pragma once

#include <set>

#include "reflection.h"

namespace shell {

class Session;

class Watches {
public:
    explicit Watches(Session &session) : session_(session) {}
    Watches(const Watches &) = delete;
    Watches &operator=(const Watches &) = delete;

    // Each throws BadLine when the driver refuses. Once more changes nothing.
    void add(const reflection::TableFunctions &table);
    void remove(const reflection::TableFunctions &table);
    // Takes all back, whatever the driver says.
    void clear();

private:
    Session &session_;
    std::set<const reflection::TableFunctions *> tables_;
};

} // namespace shell
