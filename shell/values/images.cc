#include "images.h"

namespace shell {

Value mask_of(const pd::Field &field, const void *key)
{
    const u8 *twin = static_cast<const u8 *>(key) + field.twin_offset;
    switch (field.match) {
    case pd::Match::ternary:
        return load(field.width, twin);
    case pd::Match::lpm:
        return leading_ones(static_cast<unsigned>(load(16, twin).low), field.width);
    default:
        return ones(field.width);
    }
}

KeyImages key_images(const pd::Table &table, const void *key)
{
    KeyImages images{std::vector<u8>(pd::image_size(table.key).bytes), {}};
    images.mask = images.value;
    const u8 *members = static_cast<const u8 *>(key);
    for (std::size_t i = 0; i < table.key.size(); ++i) {
        const pd::Field &field = table.key[i];
        if (field.partition_index)
            continue;
        const Value value = load(field.width, members + field.offset), mask = mask_of(field, members);
        const u16 at = pd::image_offset(table.key, i);
        write_image(value & mask, field.width, images.value.data() + at);
        write_image(mask, field.width, images.mask.data() + at);
    }
    return images;
}

std::vector<u8> full_mask(const pd::Table &table)
{
    std::vector<u8> mask(pd::image_size(table.key).bytes);
    for (std::size_t i = 0; i < table.key.size(); ++i)
        write_image(ones(table.key[i].width), table.key[i].width,
                    mask.data() + pd::image_offset(table.key, i));
    return mask;
}

std::vector<u8> action_image(const pd::Action &action, const void *parameters)
{
    std::vector<u8> image(pd::image_size(action.parameters).bytes);
    const u8 *members = static_cast<const u8 *>(parameters);
    for (std::size_t i = 0; i < action.parameters.size(); ++i) {
        const pd::Parameter &parameter = action.parameters[i];
        if (parameter.in_image)
            write_image(load(parameter.width, members + parameter.offset), parameter.width,
                        image.data() + pd::image_offset(action.parameters, i));
    }
    return image;
}

} // namespace shell
