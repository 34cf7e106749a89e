// The driver's operations at run time: a row each, and arguments of any kind as values of one type, so that
// code which serves all operations alike is written once. The rows are generated from driver/operations.toml.
#pragma once

#include <span>
#include <type_traits>

#include "operation_count.h"
#include "pd_types.h"

namespace tap {

// driver/README.md tells what they mean.
enum class Kind : u8 {
    session,
    target,
    device,
    device_byte,
    table,
    action,
    counter,
    meter,
    register_table,
    digest,
    value_set,
    calculation,
    handle,
    entry,
    entry_word,
    value_set_entry,
    member,
    group,
    selection,
    number,
    byte,
    word,
    integer,
    size,
    idle_params,
    property_value,
    property_args,
    match,
    action_spec,
    action_data,
    meter_spec,
    wred_spec,
    register_value,
    query,
    counts,
    client,
    document,
    numbers,
    members,
    bytes,
    resources,
    attributes,
    queries,
    counts_list,
    text,
    format,
    opaque,
    callback
};

enum class Direction : u8 { in, out };

enum class Returns : u8 { status, selection, integer, memory, nothing };

struct ArgumentRow {
    const char *name;
    Kind kind;
    Direction direction;
    signed char count;   // of a list: the argument that counts its elements, -1 for none
    signed char written; // of an out list: the argument that tells how many were written, -1 for none
    u32 size;            // of a list: how many elements it always has, 0 when another argument tells
};

struct OperationRow {
    const char *name;
    Returns returns;
    std::span<const ArgumentRow> arguments;
    bool local; // means nothing outside the process that calls it
};

std::span<const OperationRow> operations();

// operation_count for a name that no operation has.
unsigned find_operation(const char *name);

// An argument or a result: a number, a pointer, or for a record that goes by value a pointer to it.
class Value {
public:
    explicit Value(u64 word = 0) : word_{word} {}

    template <typename T>
    static Value of(const T &argument)
    {
        if constexpr (std::is_pointer_v<T>)
            return Value{reinterpret_cast<uintptr_t>(argument)};
        else if constexpr (std::is_class_v<T>)
            return Value{reinterpret_cast<uintptr_t>(&argument)};
        else
            return Value{static_cast<u64>(argument)};
    }

    template <typename T>
    T as() const
    {
        if constexpr (std::is_pointer_v<T>)
            return reinterpret_cast<T>(static_cast<uintptr_t>(word_));
        else if constexpr (std::is_class_v<T>)
            return *reinterpret_cast<const T *>(static_cast<uintptr_t>(word_));
        else
            return static_cast<T>(word_);
    }

    u64 number() const { return word_; }

private:
    u64 word_;
};

// Calls an operation by its place among the rows, and gives back what it returned, 0 for nothing.
u64 call(unsigned operation, const Value *values);

} // namespace tap
