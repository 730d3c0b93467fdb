#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>

#include "plots/Colours.h"
#include "plots/LineStyle.h"

using namespace tarvex;

namespace {
std::string key(const std::string& name) {
    std::string k;
    for (char c : name)
        if (c != ' ') k += static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return k;
}
}  // namespace

TEST(Colours, NamesHaveTheirX11Values) {
    // The values of X11's rgb.txt; the web's "Green" (0,128,0) and "gray" (128,128,128)
    // would be wrong.
    const std::map<std::string, Colour> x11 = {
        {"Green", {0, 255, 0}},          {"gray", {190, 190, 190}},           {"Indian Red", {205, 92, 92}},
        {"Midnight blue", {25, 25, 112}}, {"Medium Slate Blue", {123, 104, 238}}, {"Pale Green", {152, 251, 152}},
        {"Red", {255, 0, 0}},            {"Blue", {0, 0, 255}},               {"Magenta", {255, 0, 255}},
        {"White", {255, 255, 255}},      {"white", {255, 255, 255}},          {"Pink", {255, 192, 203}},
        {"Dark Green", {0, 100, 0}},     {"Dark Turquoise", {0, 206, 209}},   {"Gold", {255, 215, 0}},
        {"Lime Green", {50, 205, 50}},   {"Medium Orchid", {186, 85, 211}},  {"Sienna", {160, 82, 45}},
        {"red", {255, 0, 0}},            {"blue", {0, 0, 255}},               {"Black", {0, 0, 0}},
    };
    for (const auto& [name, want] : x11) {
        Colour c{1, 2, 3};
        ASSERT_EQ(Colours::byName(name, c), 1) << name;
        EXPECT_EQ(c, want) << name;
    }
    // Where the machine has X11's own table, every name agrees with it too.
    std::ifstream rgb("/usr/share/X11/rgb.txt");
    std::map<std::string, Colour> table;
    for (std::string line; std::getline(rgb, line);) {
        std::istringstream in(line);
        int r, g, b;
        std::string rest, word;
        if (!(in >> r >> g >> b)) continue;
        while (in >> word) rest += word;
        table.emplace(key(rest), Colour{uint8_t(r), uint8_t(g), uint8_t(b)});
    }
    for (const auto& [name, want] : x11) {
        if (!table.empty()) {
            EXPECT_EQ(table.at(key(name)), Colours::named(name)) << name;
        }
    }

    Colour c{1, 2, 3};
    EXPECT_EQ(Colours::byName("Chartreuse 7", c), 0);
    EXPECT_EQ(c, (Colour{1, 2, 3}));
    EXPECT_EQ(Colours::named("Chartreuse 7"), Colours::black());
}

TEST(Colours, PieListsBySixteenBitTriplesAndNamesThenBlack) {
    EXPECT_EQ(Colours::fastPie(0), (Colour{255, 105, 61}));  // 65535, 26985, 15677
    EXPECT_EQ(Colours::fastPie(3), (Colour{0, 250, 154}));   // 0, 64250, 39578
    EXPECT_EQ(Colours::fastPie(10), (Colour{203, 203, 203}));
    EXPECT_EQ(Colours::otherPie(0), (Colour{123, 104, 238}));
    EXPECT_EQ(Colours::otherPie(1), (Colour{225, 58, 62}));  // 57825, 14906, 15934
    EXPECT_EQ(Colours::otherPie(9), (Colour{152, 251, 152}));
    for (int past : {11, 12, 1000, -1}) {
        EXPECT_EQ(Colours::fastPie(past), Colours::black()) << past;
        EXPECT_EQ(Colours::otherPie(past), Colours::black()) << past;
    }
    // Rounded to the nearest: 128/257 is below a half, 129/257 above.
    EXPECT_EQ(Colours::from16Bit(128, 129, 70000), (Colour{0, 1, 255}));
}

TEST(LineStyle, SevenNamesInTheirOrderOfUse) {
    const char* names[] = {"solid", "dash", "dashdot", "dashdoubledot", "alternate", "doubledot", "longdash"};
    for (int k = 0; k < 9; ++k) EXPECT_STREQ(lineStyleName(lineStyleForCurve(k)), names[k % 7]) << k;
    LineStyle s = LineStyle::Solid;
    EXPECT_EQ(lineStyleByName("longdash", s), 1);
    EXPECT_EQ(s, LineStyle::LongDash);
    EXPECT_EQ(lineStyleByName("dotted", s), 0);
    EXPECT_TRUE(dashPattern(LineStyle::Solid).empty());
    EXPECT_FALSE(dashPattern(LineStyle::Alternate).empty());
}
