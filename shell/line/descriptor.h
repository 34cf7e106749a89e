// A file descriptor that is closed with its owner.
#pragma once

#include <unistd.h>

namespace shell {

class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(const Descriptor &) = delete;
    Descriptor &operator=(const Descriptor &) = delete;
    ~Descriptor()
    {
        if (number_ >= 0)
            close(number_);
    }

    void set(int number) { number_ = number; } // once
    int number() const { return number_; }

private:
    int number_ = -1;
};

} // namespace shell
