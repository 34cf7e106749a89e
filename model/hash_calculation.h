// One dynamic hash calculation of one device: its settings, and the hash itself.
#pragma once

#include <span>
#include <vector>

#include "pipe_mgr_hash.h"
#include "program.h"
#include "status.h"

namespace model {

class HashCalculation {
public:
    explicit HashCalculation(const ProgramHash &program)
        : algorithm_{program.algorithm}, input_{program.input}
    {
    }

    u32 input() const { return input_; } // the only one that there is
    u32 algorithm() const { return algorithm_; }
    pd_status set_algorithm(u32 algorithm);

    void hash(std::span<const u8> stream, std::span<u8> result) const;

    ts_model_hash_seed seed{};
    std::vector<pipe_hash_calc_input_field_attribute> attributes;

private:
    u32 algorithm_;
    u32 input_;
};

} // namespace model
