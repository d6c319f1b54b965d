// SPDX-License-Identifier: MIT
#pragma once
// The 512-byte factory calibration block: where each field sits, how it is
// stored and which versions carry it. The library's parser, the tool's block
// codec and the block-format document all take their offsets from this one
// table. Numbers are little-endian unless a field says big-endian.

#include <array>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace quarnel::facts {

inline constexpr std::size_t kBlockSize = 512;

// Versions are one unsigned byte; a field with no last version is carried by
// every version from its first on.
inline constexpr int kLastVersion = 255;

enum class FieldType {
    Characters,    // text, byte for byte
    Byte,          // one unsigned byte, or a row of them
    BigEndian,     // an unsigned integer, most significant byte first
    Singles,       // IEEE-754 single-precision values, little-endian
    Crc,           // a CRC-16, low byte first
    Reserved,      // carried, but read by nothing
    StringLength,  // the length N of the string that follows
    String,        // N bytes, N from the field before
};

struct BlockField {
    std::string_view name;
    std::size_t offset;
    std::size_t size;  // for the String, the room from its offset to the end of the block
    FieldType type;
    int firstVersion;
    int lastVersion = kLastVersion;
};

constexpr bool Carries(const BlockField& field, int version) {
    return version >= field.firstVersion && version <= field.lastVersion;
}

constexpr std::size_t End(const BlockField& field) { return field.offset + field.size; }

// Bytes that lie between two fields read one after the other.
constexpr std::size_t Gap(const BlockField& before, const BlockField& after) { return after.offset - End(before); }

inline constexpr std::size_t kSingleSize = 4;

inline constexpr BlockField kMagic{"magic", 0, 4, FieldType::Characters, 0};
inline constexpr BlockField kVersion{"version", 4, 1, FieldType::Byte, 0};
inline constexpr BlockField kSubVersion{"subVersion", 5, 1, FieldType::Byte, 0};
inline constexpr BlockField kHeaderCrcBytes{"crc", 6, 2, FieldType::Crc, 0};
inline constexpr BlockField kDataWord{"dataWord", 8, 4, FieldType::BigEndian, 0};
inline constexpr BlockField kPrimaries{"primaries", 12, 12 * kSingleSize, FieldType::Singles, 0};
inline constexpr BlockField kWord60{"word60", 60, 2, FieldType::BigEndian, 2};
inline constexpr BlockField kReserved62{"reserved", 62, 4, FieldType::Reserved, 3};
inline constexpr BlockField kBytes66{"bytes66", 66, 4, FieldType::Byte, 3};
inline constexpr BlockField kReserved70{"reserved", 70, 1, FieldType::Reserved, 4};
inline constexpr BlockField kFirstWhite{"firstWhite", 71, 2 * kSingleSize, FieldType::Singles, 4};
inline constexpr BlockField kTargetLuminance{"targetLuminance", 79, kSingleSize, FieldType::Singles, 4};
inline constexpr BlockField kDefaultWhite{"defaultWhite", 83, 2 * kSingleSize, FieldType::Singles, 4};
inline constexpr BlockField kReserved91{"reserved", 91, 12, FieldType::Reserved, 5};
inline constexpr BlockField kToneLevels{"toneLevels", 103, 45 * kSingleSize, FieldType::Singles, 5};
inline constexpr BlockField kToneCrcBytes{"crc2", 283, 2, FieldType::Crc, 5};
inline constexpr BlockField kBlackXyz{"blackXYZ", 285, 3 * kSingleSize, FieldType::Singles, 5};
// The trailer moved one byte on in version 7, which keeps the LUT
// improvement's interpolation step at byte 297.
inline constexpr BlockField kStepByte{"stepByte", 297, 1, FieldType::Byte, 7};
inline constexpr BlockField kUseMethodV6{"useMethod", 297, 1, FieldType::Byte, 6, 6};
inline constexpr BlockField kLutStringSizeV6{"lutStringSize", 298, 1, FieldType::StringLength, 6, 6};
inline constexpr BlockField kLutStringV6{"lutString", 299, kBlockSize - 299, FieldType::String, 6, 6};
inline constexpr BlockField kUseMethodV7{"useMethod", 298, 1, FieldType::Byte, 7};
inline constexpr BlockField kLutStringSizeV7{"lutStringSize", 299, 1, FieldType::StringLength, 7};
inline constexpr BlockField kLutStringV7{"lutString", 300, kBlockSize - 300, FieldType::String, 7};

// Every field in the order of its offset, the two trailers each in place.
inline constexpr std::array kBlockFields{
    kMagic,        kVersion,         kSubVersion,  kHeaderCrcBytes, kDataWord,        kPrimaries,
    kWord60,       kReserved62,      kBytes66,     kReserved70,     kFirstWhite,      kTargetLuminance,
    kDefaultWhite, kReserved91,      kToneLevels,  kToneCrcBytes,   kBlackXyz,        kUseMethodV6,
    kStepByte,     kLutStringSizeV6, kUseMethodV7, kLutStringV6,    kLutStringSizeV7, kLutStringV7,
};

// The gamma LUT string at the block's end: the method to decode it with, its
// length byte and the string.
struct Trailer {
    BlockField useMethod, lutStringSize, lutString;
};
inline constexpr Trailer kTrailerV6{kUseMethodV6, kLutStringSizeV6, kLutStringV6};
inline constexpr Trailer kTrailerV7{kUseMethodV7, kLutStringSizeV7, kLutStringV7};
constexpr const Trailer& TrailerOf(int version) {
    return version >= kUseMethodV7.firstVersion ? kTrailerV7 : kTrailerV6;
}

// A stored CRC and the bytes it covers; nothing else in the block is covered.
struct CoveredCrc {
    BlockField stored, covered;
};
inline constexpr CoveredCrc kHeaderCrc{kHeaderCrcBytes, kPrimaries};
inline constexpr CoveredCrc kToneCrc{kToneCrcBytes, kToneLevels};

// The block's first four bytes: "HDOC", or "R2R" and a zero byte.
inline constexpr std::array<uint8_t, 4> kMagicHdoc{'H', 'D', 'O', 'C'};
inline constexpr std::array<uint8_t, 4> kMagicR2r{'R', '2', 'R', 0};
bool MagicAccepted(const uint8_t* first4);

// The drive levels (of 255) at which the factory measured each primary's
// tone: black, the five grey levels of `toneLevels`, full drive.
inline constexpr std::array<int, 7> kToneDriveLevels{0, 42, 86, 128, 168, 210, 255};

// The first white that a block too old to carry one stands for.
inline constexpr double kEarlyFirstWhiteX = 0.3;
inline constexpr double kEarlyFirstWhiteY = 0.315;

}  // namespace quarnel::facts
