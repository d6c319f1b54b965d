// SPDX-License-Identifier: MIT
#include "e2e/record.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <sstream>

namespace quarnel::test {

namespace {

// The whole-number steps that carry most arrays exactly: the 16-bit full scale of an 8-bit input, and the
// 1024-point float ramps of the NVIDIA arrays.
constexpr double kScales[] = {65280.0, 1023.0};

bool IsTableName(const std::string& word) {
    return word.size() > 1 && (word[0] == 'L' || word[0] == 'I' || word[0] == 'N') &&
           word.find_first_not_of("0123456789", 1) == std::string::npos;
}

// Bit patterns of a smooth interleaved red, green, blue curve: each channel's second differences are small.
constexpr std::size_t kChannels = 3;

std::vector<int64_t> Differences(std::vector<int64_t> v) {
    for (int order = 0; order < 2; ++order)
        for (std::size_t i = v.size(); i-- > kChannels;)
            v[i] = static_cast<int64_t>(static_cast<uint64_t>(v[i]) - static_cast<uint64_t>(v[i - kChannels]));
    return v;
}

std::vector<int64_t> Sums(std::vector<int64_t> v) {
    for (int order = 0; order < 2; ++order)
        for (std::size_t i = kChannels; i < v.size(); ++i)
            v[i] = static_cast<int64_t>(static_cast<uint64_t>(v[i]) + static_cast<uint64_t>(v[i - kChannels]));
    return v;
}

// Values as multiples of 1 / scale when each one is exactly that, else as bit patterns.
template <typename T, typename Bits>
std::string EncodeReal(const T* values, std::size_t count) {
    std::vector<int64_t> whole(count);
    for (double scale : kScales) {
        bool exact = true;
        for (std::size_t i = 0; i < count && exact; ++i) {
            whole[i] = std::llround(values[i] * scale);
            exact = std::bit_cast<Bits>(static_cast<T>(static_cast<double>(whole[i]) / scale)) ==
                    std::bit_cast<Bits>(values[i]);
        }
        if (exact) return std::string("/") + std::to_string(static_cast<int>(scale)) + " " + EncodeRuns(whole);
    }
    for (std::size_t i = 0; i < count; ++i) whole[i] = static_cast<int64_t>(std::bit_cast<Bits>(values[i]));
    return "bits " + EncodeRuns(Differences(whole));
}

std::vector<double> DecodeTable(const std::string& name, const std::string& rest) {
    std::vector<double> values;
    if (name[0] == 'L') {
        for (int64_t v : DecodeRuns(rest)) values.push_back(static_cast<double>(v));
        return values;
    }
    const std::size_t gap = rest.find(' ');
    const std::string form = rest.substr(0, gap);
    const std::vector<int64_t> runs = DecodeRuns(gap == std::string::npos ? "" : rest.substr(gap + 1));
    for (int64_t v : form == "bits" ? Sums(runs) : runs) {
        if (form != "bits")
            values.push_back(name[0] == 'N' ? static_cast<float>(static_cast<double>(v) / std::stod(form.substr(1)))
                                            : static_cast<double>(v) / std::stod(form.substr(1)));
        else if (name[0] == 'N')
            values.push_back(std::bit_cast<float>(static_cast<uint32_t>(v)));
        else
            values.push_back(std::bit_cast<double>(static_cast<uint64_t>(v)));
    }
    return values;
}

std::vector<std::string> Lines(const std::string& text) {
    std::istringstream in(text);
    std::vector<std::string> lines;
    for (std::string line; std::getline(in, line);) lines.push_back(line);
    return lines;
}

std::string Where(char kind, std::size_t i) {
    std::ostringstream at;
    if (kind == 'N')
        at << (i < 3072 ? "pre-gamma" : "post-gamma") << " entry " << i % 3072 / 3 << " channel " << i % 3;
    else
        at << "plane " << i / 256 << " level " << i % 256;
    return at.str();
}

}  // namespace

std::string EncodeRuns(const std::vector<int64_t>& values) {
    std::string text;
    uint64_t previous = 0;
    for (std::size_t i = 0; i < values.size();) {
        const auto step = static_cast<int64_t>(static_cast<uint64_t>(values[i]) - previous);
        std::size_t n = 1;
        while (i + n < values.size() && static_cast<int64_t>(static_cast<uint64_t>(values[i + n]) -
                                                             static_cast<uint64_t>(values[i + n - 1])) == step)
            ++n;
        text += std::string(text.empty() ? "" : " ") + std::to_string(step) +
                (n > 1 ? std::string("*") + std::to_string(n) : "");
        previous = static_cast<uint64_t>(values[i + n - 1]);
        i += n;
    }
    return text;
}

std::vector<int64_t> DecodeRuns(const std::string& text) {
    std::vector<int64_t> values;
    uint64_t value = 0;
    std::istringstream in(text);
    for (std::string word; in >> word;) {
        const std::size_t star = word.find('*');
        const auto step = static_cast<uint64_t>(std::stoll(word.substr(0, star)));
        const long n = star == std::string::npos ? 1 : std::stol(word.substr(star + 1));
        for (long k = 0; k < n; ++k) values.push_back(static_cast<int64_t>(value += step));
    }
    return values;
}

std::string ValueTable::Name(char kind, const std::string& encoded) {
    auto [at, fresh] = named_.try_emplace(kind + encoded);
    if (fresh) {
        at->second = std::string(1, kind) + std::to_string(counts_[kind]++);
        lines_.push_back(at->second + " " + encoded + "\n");
    }
    return at->second;
}

std::string ValueTable::Lut(const uint16_t* values, std::size_t count) {
    return Name('L', EncodeRuns(std::vector<int64_t>(values, values + count)));
}

std::string ValueTable::Doubles(char kind, const double* values, std::size_t count) {
    return Name(kind, EncodeReal<double, uint64_t>(values, count));
}

std::string ValueTable::Floats(char kind, const float* values, std::size_t count) {
    return Name(kind, EncodeReal<float, uint32_t>(values, count));
}

std::string ValueTable::Lines() const {
    std::string text;
    for (char kind : {'L', 'I', 'N'})
        for (const std::string& line : lines_)
            if (line[0] == kind) text += line;
    return text;
}

std::map<std::string, std::vector<double>> ParseTables(const std::string& record) {
    std::map<std::string, std::vector<double>> tables;
    std::istringstream in(record);
    for (std::string line; std::getline(in, line);) {
        const std::size_t gap = line.find(' ');
        const std::string name = line.substr(0, gap);
        if (IsTableName(name)) tables[name] = DecodeTable(name, gap == std::string::npos ? "" : line.substr(gap + 1));
    }
    return tables;
}

std::string FirstDifference(const std::string& expected, const std::string& actual) {
    const auto want = Lines(expected), got = Lines(actual);
    for (std::size_t n = 0; n < std::max(want.size(), got.size()); ++n) {
        const std::string a = n < want.size() ? want[n] : "(none)", b = n < got.size() ? got[n] : "(none)";
        if (a == b) continue;
        const std::string name = a.substr(0, a.find(' '));
        if (!IsTableName(name) || name != b.substr(0, b.find(' ')))
            return std::string("line ") + std::to_string(n + 1) + "\n  expected: " + a + "\n  actual:   " + b;
        const auto x = ParseTables(a).at(name), y = ParseTables(b).at(name);
        std::size_t i = 0;
        while (i < x.size() && i < y.size() && std::bit_cast<uint64_t>(x[i]) == std::bit_cast<uint64_t>(y[i])) ++i;
        const auto user = std::find_if(want.begin(), want.end(), [&](const std::string& line) {
            return line.starts_with("type") && line.find(" " + name + " ") != std::string::npos;
        });
        std::ostringstream out;
        out.precision(17);
        out << name << " (first output of \"" << (user == want.end() ? "" : user->substr(0, user->find(" status")))
            << "\") " << Where(name[0], i) << ": expected ";
        (i < x.size() ? out << x[i] : out << "no entry") << ", actual ";
        (i < y.size() ? out << y[i] : out << "no entry");
        return out.str();
    }
    return "";
}

}  // namespace quarnel::test
