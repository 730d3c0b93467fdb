#include "plots/PngDensity.h"

#include <cmath>
#include <cstdint>
#include <cstring>

namespace tarvex {

namespace {

constexpr unsigned char kSignature[8] = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1a, '\n'};
constexpr double kInchesPerMetre = 1000.0 / 25.4;

uint32_t crc32(const unsigned char* data, size_t n, uint32_t crc = 0xffffffffu) {
    for (size_t i = 0; i < n; ++i) {
        crc ^= data[i];
        for (int k = 0; k < 8; ++k) crc = (crc >> 1) ^ (0xedb88320u & (0u - (crc & 1u)));
    }
    return crc;
}

void putBig(std::string& s, uint32_t v) {
    for (int shift = 24; shift >= 0; shift -= 8) s += static_cast<char>((v >> shift) & 0xffu);
}

bool isPng(const std::string& png) {
    return png.size() >= 33 && std::memcmp(png.data(), kSignature, 8) == 0 && png.compare(12, 4, "IHDR") == 0;
}

}  // namespace

std::string withPixelDensity(const std::string& png, double dotsPerInch) {
    if (!isPng(png)) return png;
    const auto perMetre = static_cast<uint32_t>(std::lround(dotsPerInch * kInchesPerMetre));
    std::string body = "pHYs";
    putBig(body, perMetre);
    putBig(body, perMetre);
    body += '\1';  // unit: the metre
    std::string chunk;
    putBig(chunk, 9);
    chunk += body;
    putBig(chunk, crc32(reinterpret_cast<const unsigned char*>(body.data()), body.size()) ^ 0xffffffffu);
    const size_t afterHeader = 8 + 4 + 4 + 13 + 4;  // signature, length, type, data, crc
    return png.substr(0, afterHeader) + chunk + png.substr(afterHeader);
}

}  // namespace tarvex
