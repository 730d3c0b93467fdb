#include "plots/Colours.h"

#include <cctype>
#include <cstring>

namespace tarvex {

namespace {

struct NamedColour {
    const char* key;  // lower case, no blanks
    Colour colour;
};

// Every colour name the figures and sheets use, with its rgb.txt value.
constexpr NamedColour kTable[] = {
    {"black", {0, 0, 0}},
    {"white", {255, 255, 255}},
    {"red", {255, 0, 0}},
    {"green", {0, 255, 0}},
    {"blue", {0, 0, 255}},
    {"magenta", {255, 0, 255}},
    {"gray", {190, 190, 190}},
    {"grey", {190, 190, 190}},
    {"indianred", {205, 92, 92}},
    {"midnightblue", {25, 25, 112}},
    {"mediumslateblue", {123, 104, 238}},
    {"palegreen", {152, 251, 152}},
    {"pink", {255, 192, 203}},
    {"darkgreen", {0, 100, 0}},
    {"darkturquoise", {0, 206, 209}},
    {"gold", {255, 215, 0}},
    {"limegreen", {50, 205, 50}},
    {"mediumorchid", {186, 85, 211}},
    {"sienna", {160, 82, 45}},
};

// The pie lists: 16-bit triples, or a name (the other fields then unused).
struct PieEntry {
    const char* name;
    unsigned r, g, b;
};

constexpr PieEntry kFastPies[] = {
    {nullptr, 65535, 26985, 15677}, {nullptr, 35466, 11051, 58082}, {nullptr, 65535, 52171, 26471},
    {nullptr, 0, 64250, 39578},     {nullptr, 65535, 31611, 51914}, {nullptr, 17990, 33410, 46260},
    {nullptr, 45232, 12336, 24672}, {nullptr, 19789, 47545, 65535}, {nullptr, 33153, 45489, 20817},
    {nullptr, 44975, 46517, 65535}, {nullptr, 52171, 52171, 52171},
};

constexpr PieEntry kOtherPies[] = {
    {"Medium Slate Blue", 0, 0, 0}, {nullptr, 57825, 14906, 15934}, {"Dark Green", 0, 0, 0},
    {"Dark Turquoise", 0, 0, 0},    {"Gold", 0, 0, 0},              {"Lime Green", 0, 0, 0},
    {"Medium Orchid", 0, 0, 0},     {"Pink", 0, 0, 0},              {"Sienna", 0, 0, 0},
    {"Pale Green", 0, 0, 0},        {nullptr, 52171, 52171, 52171},
};

static_assert(sizeof kFastPies / sizeof kFastPies[0] == sizeof kOtherPies / sizeof kOtherPies[0]);

std::string keyOf(const std::string& name) {
    std::string key;
    for (char c : name)
        if (!std::isspace(static_cast<unsigned char>(c))) key += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return key;
}

uint8_t scale16(unsigned v) {
    if (v > 65535u) v = 65535u;
    return static_cast<uint8_t>((v * 255u + 32767u) / 65535u);
}

Colour pieColour(const PieEntry* list, int position) {
    if (position < 0 || position >= Colours::pieListSize()) return Colours::black();
    const PieEntry& e = list[position];
    return e.name ? Colours::named(e.name) : Colours::from16Bit(e.r, e.g, e.b);
}

}  // namespace

int Colours::byName(const std::string& name, Colour& out) {
    const std::string key = keyOf(name);
    for (const NamedColour& c : kTable)
        if (key == c.key) {
            out = c.colour;
            return 1;
        }
    return 0;
}

Colour Colours::named(const std::string& name) {
    Colour c = black();
    (void)byName(name, c);
    return c;
}

Colour Colours::from16Bit(unsigned red, unsigned green, unsigned blue) {
    return {scale16(red), scale16(green), scale16(blue)};
}

int Colours::pieListSize() { return static_cast<int>(sizeof kFastPies / sizeof kFastPies[0]); }

Colour Colours::fastPie(int position) { return pieColour(kFastPies, position); }

Colour Colours::otherPie(int position) { return pieColour(kOtherPies, position); }

}  // namespace tarvex
