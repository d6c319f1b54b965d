// SPDX-License-Identifier: MIT
#include "model/panel_lot.h"

#include <cmath>

#include "facts/block_layout.h"
#include "model/block_codec.h"
#include "model/panel_model.h"
#include "model/sample_panel.h"

namespace quarnel::tool {
namespace {

constexpr int kFirstVersion = 4, kLastVersion = 7, kToneVersion = facts::kToneLevels.firstVersion;
constexpr double kLuminanceSpread = 0.04;  // each primary's luminance, either way
constexpr double kChromaSpread = 0.015;    // its X and Z apart from its Y
constexpr double kBlackSpread = 0.2;
constexpr double kGamma = 2.2, kGammaSpread = 0.08;
constexpr double kTargetShare = 0.94;  // of the native white's luminance

// SplitMix64: a well-mixed stream from any seed, the same on every platform.
class Random {
public:
    explicit Random(uint64_t seed) : state_(seed) {}
    uint64_t Next() {
        uint64_t z = (state_ += 0x9E3779B97F4A7C15ull);
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ull;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EBull;
        return z ^ (z >> 31);
    }
    double Unit() { return static_cast<double>(Next() >> 11) * 0x1.0p-53; }       // 0..1
    double Around(double spread) { return 1.0 + spread * (2.0 * Unit() - 1.0); }  // 1 +- spread
    size_t Below(size_t n) { return static_cast<size_t>(Next() % n); }

private:
    uint64_t state_;
};

BlockDescription VariedPanel(Random& random) {
    BlockDescription d = SamplePanel();
    d.version = static_cast<uint8_t>(kFirstVersion + random.Below(kLastVersion - kFirstVersion + 1));
    std::array<double, 3> black{};
    for (size_t k = 0; k < 3; ++k) black[k] = d.black[k] * random.Around(kBlackSpread);
    std::array<Xyz, 3> full{};
    for (size_t c = 0; c < 3; ++c) {
        const double luminance = random.Around(kLuminanceSpread);
        full[c] = {d.primaries[c][0] * luminance * random.Around(kChromaSpread), d.primaries[c][1] * luminance,
                   d.primaries[c][2] * luminance * random.Around(kChromaSpread)};
        const double gamma = kGamma * random.Around(kGammaSpread / kGamma);
        for (size_t level = 0; level < kGreyLevels; ++level) {
            const double share = std::pow(kToneDriveLevels[level + 1] / kToneDriveLevels.back(), gamma);
            for (size_t k = 0; k < 3; ++k)
                d.toneLevels[c][level][k] = static_cast<float>(black[k] + (full[c][k] - black[k]) * share);
        }
    }
    // The channels add up over black, as a colorimeter sees them.
    for (size_t k = 0; k < 3; ++k) {
        for (size_t c = 0; c < 3; ++c) d.primaries[c][k] = static_cast<float>(full[c][k]);
        d.primaries[3][k] = static_cast<float>(full[0][k] + full[1][k] + full[2][k] - 2 * black[k]);
        d.black[k] = static_cast<float>(black[k]);
    }
    d.targetLuminance = static_cast<float>(kTargetShare * d.primaries[3][1]);
    return d;
}

// One byte of the field changed, so that whatever checks the field fails.
void Flip(std::string& bytes, const facts::BlockField& field, Random& random) {
    bytes[field.offset + random.Below(field.size)] ^= static_cast<char>(1 + random.Below(255));
}

}  // namespace

LotPanel MakeLotPanel(uint64_t seed, uint64_t number, double damagedShare) {
    Random random(seed * 0x100000001B3ull ^ number);
    const BlockDescription description = VariedPanel(random);
    const Block block = EncodeBlock(description, false);
    LotPanel panel{std::string(block.begin(), block.end()), description.version, "none"};
    if (!(random.Unit() < damagedShare)) return panel;
    switch (random.Below(4)) {
        case 0:
            panel.damage = "flipped-primaries";
            Flip(panel.bytes, facts::kPrimaries, random);
            break;
        case 1:
            // A version-4 block has no tone readings to damage.
            if (panel.version < kToneVersion) {
                panel.damage = "flipped-primaries";
                Flip(panel.bytes, facts::kPrimaries, random);
            } else {
                panel.damage = "flipped-tone";
                Flip(panel.bytes, facts::kToneLevels, random);
            }
            break;
        case 2:
            panel.damage = "truncated";
            panel.bytes.resize(random.Below(kBlockSize));
            break;
        default:
            panel.damage = "bad-magic";
            Flip(panel.bytes, facts::kMagic, random);
            break;
    }
    return panel;
}

}  // namespace quarnel::tool
