#include "hash_calculation.h"

#include <algorithm>

#include <boost/crc.hpp>

namespace model {

namespace {

using Crc16 = boost::crc_optimal<16, 0x8005, 0, 0, true, true>;
using Crc32 = boost::crc_optimal<32, 0x04c11db7, 0xffffffff, 0xffffffff, true, true>;

template <typename Crc>
u32 checksum(pd_word seed, std::span<const u8> stream)
{
    Crc crc = seed != 0 ? Crc{static_cast<typename Crc::value_type>(seed)} : Crc{};
    crc.process_bytes(stream.data(), stream.size());
    return crc.checksum();
}

} // namespace

pd_status HashCalculation::set_algorithm(u32 algorithm)
{
    if (algorithm != TS_MODEL_CRC_16 && algorithm != TS_MODEL_CRC_32)
        return unknown_object;
    algorithm_ = algorithm;
    return ok;
}

void HashCalculation::hash(std::span<const u8> stream, std::span<u8> result) const
{
    u32 left = algorithm_ == TS_MODEL_CRC_16 ? checksum<Crc16>(seed.first, stream)
                                             : checksum<Crc32>(seed.first, stream);
    std::for_each(result.rbegin(), result.rend(), [&](u8 &byte) {
        byte = static_cast<u8>(left);
        left >>= 8;
    });
}

} // namespace model
