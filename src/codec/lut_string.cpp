// SPDX-License-Identifier: MIT
#include "codec/lut_string.h"

#include <algorithm>
#include <optional>
#include <vector>

#include "codec/huffman_string.h"
#include "codec/lut_differences.h"
#include "codec/position_lists.h"

namespace quarnel::codec {
namespace {

using String = std::vector<uint8_t>;

struct Choice {
    uint32_t method;
    const String* string;
    int length;  // what the size limit is checked against
};

// The position lists win ties. A Huffman string is measured by its length
// byte, a position-list string by its real size.
std::optional<Choice> ChooseString(const std::optional<String>& lists, const std::optional<String>& huffman) {
    if (!lists && !huffman) return std::nullopt;
    const int listsLength = lists ? static_cast<int>(lists->size()) : 0;
    const int huffmanLength = huffman ? (*huffman)[0] : 0;
    if (lists && (!huffman || listsLength <= huffmanLength)) return Choice{kMethodPositionLists, &*lists, listsLength};
    return Choice{kMethodHuffman, &*huffman, huffmanLength};
}

bool DecodeString(const uint8_t* string, int32_t count, int32_t method, Differences& d) {
    if (method == static_cast<int32_t>(kMethodHuffman)) return DecodeHuffmanString(string, count, d);
    if (method == static_cast<int32_t>(kMethodPositionLists)) return DecodePositionLists(string, d);
    return false;
}

}  // namespace

int32_t StoreLut(const uint16_t* lut, uint32_t maxSize, uint8_t* out, int32_t outCapacity, uint32_t* method) {
    *method = kMethodPositionLists;
    const auto d = MakeDifferences(lut);
    if (!d) return kStringFailed;

    const auto lists = EncodePositionLists(*d);
    const auto huffman = EncodeHuffmanString(*d);
    const auto choice = ChooseString(lists, huffman);
    if (!choice) return kStringFailed;
    *method = choice->method;

    if (static_cast<uint32_t>(choice->length) > maxSize) return choice->length;
    const String& string = *choice->string;
    if (outCapacity < 0 || string.size() > static_cast<std::size_t>(outCapacity)) return kStringFailed;
    std::copy(string.begin(), string.end(), out);
    return 0;
}

int32_t LoadLut(uint16_t* lut, const uint8_t* string, int32_t count, int32_t method) {
    Differences d;
    d.fill(1);
    if (!DecodeString(string, count, method, d)) return kStringFailed;
    // Summed apart from `lut`, which a string that does not sum up leaves untouched.
    Lut16 values;
    if (!SumDifferences(d, values.data()) || count != kLutEntries) return kStringFailed;
    std::copy(values.begin(), values.end(), lut);
    return 0;
}

}  // namespace quarnel::codec
