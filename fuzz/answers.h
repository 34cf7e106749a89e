// A driver whose answers come out of an input: what read-back and placement data hold may be anything that
// the room for them takes.
#pragma once

#include "bytes.h"
#include "reflection.h"

namespace fuzz {

// An answer begins at `bytes` each time that it is asked for.
struct Answer {
    Bytes bytes;
    std::size_t key_bytes;
    std::span<const pd::Binding> actions; // one of these, mostly
};

// What every read by handle gives. Placement data are a pointer to an answer.
void set_answer(const Answer &answer);
// Takes back the memory that the library keeps on purpose.
void forget_answer();

} // namespace fuzz
