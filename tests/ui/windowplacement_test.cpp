// Where the main window opens: the saved placement when it shows on a screen, else
// centred on the primary screen.
#include "ui/windowplacement.h"

#include <gtest/gtest.h>

using namespace brindar;

TEST(WindowPlacement, SavedPlacementOrCentred)
{
    const QRect primary(0, 0, 1920, 1040);
    const QRect second(1920, 0, 1280, 1000);
    const QSize fallback(1100, 700);
    const QRect centred(410, 170, 1100, 700);
    const auto chooser = [](std::optional<int> left, std::optional<int> top, std::optional<int> width,
                            std::optional<int> height, std::optional<int> state = std::nullopt) {
        Chooser c;
        c.left = left;
        c.top = top;
        c.width = width;
        c.height = height;
        c.windowState = state;
        return c;
    };
    const struct {
        const char* name;
        Chooser chooser;
        QList<QRect> screens;
        QRect expected;
        bool maximised;
    } cases[] = {
        {"nothing saved", Chooser{}, {primary}, centred, false},
        {"saved, on the primary screen", chooser(100, 50, 800, 600), {primary}, QRect(100, 50, 800, 600), false},
        {"saved on the second screen", chooser(2000, 100, 800, 600), {primary, second}, QRect(2000, 100, 800, 600),
         false},
        {"second screen gone", chooser(2000, 100, 800, 600), {primary}, QRect(560, 220, 800, 600), false},
        {"title above every screen", chooser(100, -500, 800, 600), {primary}, QRect(560, 220, 800, 600), false},
        {"only a sliver shows", chooser(1880, 100, 800, 600), {primary}, QRect(560, 220, 800, 600), false},
        {"larger than the screen", chooser(0, 0, 5000, 4000), {primary}, QRect(0, 0, 1920, 1040), false},
        {"too small to use", chooser(10, 10, 20, 20), {primary}, QRect(10, 10, 1100, 700), false},
        {"maximised", chooser(100, 50, 800, 600, 2), {primary}, QRect(100, 50, 800, 600), true},
        {"position without size", chooser(100, 50, std::nullopt, std::nullopt), {primary},
         QRect(100, 50, 1100, 700), false},
    };
    for (const auto& c : cases) {
        const Placement placement = PlacementOf(c.chooser, c.screens, primary, fallback);
        EXPECT_EQ(placement.geometry, c.expected) << c.name;
        EXPECT_EQ(placement.maximised, c.maximised) << c.name;
    }
}
