#include "calib/block_writer.h"

#include <algorithm>
#include <bit>

namespace quarnel::test {
namespace {

class Writer {
public:
    explicit Writer(std::vector<uint8_t>& block) : block_(block) {}
    void At(int offset) { at_ = static_cast<std::size_t>(offset); }
    void Byte(uint8_t v) {
        if (at_ < block_.size()) block_[at_] = v;
        ++at_;
    }
    void Single(float v) {
        const auto bits = std::bit_cast<uint32_t>(v);
        for (int i = 0; i < 4; ++i) Byte(static_cast<uint8_t>(bits >> (8 * i)));
    }
    void BigEndian(uint32_t v, int size) {
        for (int i = size - 1; i >= 0; --i) Byte(static_cast<uint8_t>(v >> (8 * i)));
    }

private:
    std::vector<uint8_t>& block_;
    std::size_t at_ = 0;
};

void PutCrc(std::vector<uint8_t>& block, int from, int size, int lowAt, bool broken) {
    uint16_t crc = ReferenceCrc16(block.data() + from, static_cast<std::size_t>(size));
    if (broken) crc = static_cast<uint16_t>(crc ^ 0x0100);
    block[static_cast<std::size_t>(lowAt)] = static_cast<uint8_t>(crc & 0xFF);
    block[static_cast<std::size_t>(lowAt + 1)] = static_cast<uint8_t>(crc >> 8);
}

}  // namespace

std::array<float, 45> BlockFields::DefaultToneLevels() {
    std::array<float, 45> levels{};
    for (int i = 0; i < 45; ++i) levels[static_cast<std::size_t>(i)] = 0.5f + 1.25f * static_cast<float>(i);
    return levels;
}

uint16_t ReferenceCrc16(const uint8_t* bytes, std::size_t size) {
    uint16_t crc = 0xFFFF;
    for (std::size_t i = 0; i < size; ++i) {
        for (int bit = 7; bit >= 0; --bit) {
            const bool in = ((bytes[i] >> bit) & 1) != 0;
            const bool top = (crc & 0x8000) != 0;
            crc = static_cast<uint16_t>(crc << 1);
            if (in != top) crc = static_cast<uint16_t>(crc ^ 0x1021);
        }
    }
    return crc;
}

int LutStringOffset(uint8_t version) { return version >= 7 ? 299 : 298; }

std::vector<uint8_t> WriteBlock(const BlockFields& fields) {
    std::vector<uint8_t> block(512, 0);
    Writer w(block);
    for (uint8_t b : fields.magic) w.Byte(b);
    w.Byte(fields.version);
    w.Byte(fields.subVersion);
    w.At(8);
    w.BigEndian(fields.dataWord, 4);
    for (float v : fields.primaries) w.Single(v);
    PutCrc(block, 12, 48, 6, fields.breakHeaderCrc);
    if (fields.version >= 2) w.BigEndian(fields.word60, 2);
    if (fields.version >= 3) {
        w.At(66);
        for (uint8_t b : fields.bytes66) w.Byte(b);
    }
    if (fields.version >= 4) {
        w.At(71);
        for (float v : fields.whites) w.Single(v);
    }
    if (fields.version >= 5) {
        w.At(103);
        for (float v : fields.toneLevels) w.Single(v);
        PutCrc(block, 103, 180, 283, fields.breakToneCrc);
        w.At(285);
        for (float v : fields.black) w.Single(v);
    }
    if (fields.version >= 6) {
        w.At(297);
        if (fields.version >= 7) w.Byte(fields.byte297);
        w.Byte(fields.useMethod);
        for (uint8_t b : fields.lutString) w.Byte(b);
    }
    return block;
}

std::string AsString(const std::vector<uint8_t>& bytes) { return {bytes.begin(), bytes.end()}; }

}  // namespace quarnel::test
