#include "shell/lamp.h"

#include <gtest/gtest.h>

#include <QImage>

namespace corvenna {
namespace {

constexpr QRgb Red = 0xFFD02020;

QImage Picture(Lamp& lamp, int side) {
    lamp.resize(side, side);
    QImage image(side, side, QImage::Format_ARGB32);
    image.fill(Qt::white);
    lamp.render(&image);
    return image;
}

/// How many times one comes upon the lamp's colour on a way across the middle.
int LinesAcross(const QImage& image) {
    int lines = 0;
    bool within = false;
    for (int x = 0; x < image.width(); ++x) {
        const QRgb pixel = image.pixel(x, image.height() / 2);
        const bool red = qRed(pixel) > qBlue(pixel) + 60;
        if (red && !within) ++lines;
        within = red;
    }
    return lines;
}

TEST(Lamp, OnItIsFilledAndOffItIsHatched) {
    for (const auto outline : {Lamp::Outline::Circle, Lamp::Outline::Square}) {
        Lamp lamp(outline, Red, "lamp");
        lamp.SetFill(Qt::SolidPattern);
        EXPECT_EQ(LinesAcross(Picture(lamp, 100)), 1);
        EXPECT_EQ(lamp.accessibleDescription(), "on");
        lamp.SetFill(Qt::DiagCrossPattern);
        EXPECT_GE(LinesAcross(Picture(lamp, 100)), 3);
        EXPECT_EQ(lamp.accessibleDescription(), "off");
    }
}

TEST(Lamp, TheHatchingGrowsWithTheLamp) {
    for (const auto outline : {Lamp::Outline::Circle, Lamp::Outline::Square}) {
        Lamp lamp(outline, Red, "lamp");
        const int lines = LinesAcross(Picture(lamp, 60));
        EXPECT_EQ(LinesAcross(Picture(lamp, 120)), lines);
        EXPECT_EQ(LinesAcross(Picture(lamp, 180)), lines);
    }
}

}  // namespace
}  // namespace corvenna
