// SPDX-License-Identifier: MIT
#include "views/hud/fillCapsule.h"

#include <QPainter>

#include <gtest/gtest.h>

#include <cmath>

using namespace talvera;

namespace {

QImage cleared(int width, int height) {
    QImage image(width, height, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

TEST(FillCapsule, anyPlace_looksAsAPainterWouldDrawIt) {
    for (const auto& capsule : {QRectF(0, 0, 2.5, 22), QRectF(5, 3.7, 2.5, 14.6),
                                QRectF(10, 10.12, 2.5, 1.76), QRectF(2, 1.5, 5, 19.25)}) {
        auto drawn = cleared(24, 22);
        fillCapsule(drawn, capsule, Qt::blue, 0.8, 0.8);
        auto painted = cleared(24, 22);
        QPainter painter(&painted);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0, 0, 255, 204));
        const double radius = std::min(capsule.width(), capsule.height()) / 2;
        painter.drawRoundedRect(capsule, radius, radius);
        painter.end();
        double drawnArea = 0;
        double paintedArea = 0;
        for (int y = 0; y < drawn.height(); ++y) {
            for (int x = 0; x < drawn.width(); ++x) {
                const int alpha = qAlpha(drawn.pixel(x, y));
                const int wanted = qAlpha(painted.pixel(x, y));
                EXPECT_NEAR(alpha, wanted, 60) << x << ", " << y; // at round ends; 0 to 255
                drawnArea += alpha;
                paintedArea += wanted;
            }
        }
        EXPECT_NEAR(drawnArea / paintedArea, 1, 0.08);
    }
}

TEST(FillCapsule, gradient_fadesFromTopToBottom) {
    auto image = cleared(3, 22);
    fillCapsule(image, QRectF(0, 0, 2.5, 22), Qt::red, 0.95, 0.55);
    EXPECT_NEAR(qAlpha(image.pixel(1, 2)), 255 * 0.9, 5);
    EXPECT_NEAR(qAlpha(image.pixel(1, 19)), 255 * 0.6, 5);
    EXPECT_EQ(qRed(image.pixel(1, 10)), qAlpha(image.pixel(1, 10))); // premultiplied
}

TEST(FillCapsule, largerThanThePicture_staysInside) {
    auto image = cleared(4, 4);
    fillCapsule(image, QRectF(-3, -5, 20, 30), Qt::red, 1, 1);
    EXPECT_EQ(qAlpha(image.pixel(3, 3)), 255);
    fillCapsule(image, QRectF(10, 10, 2, 5), Qt::red, 1, 1);
    fillCapsule(image, QRectF(1, 1, 2, 0), Qt::red, 1, 1);
}

} // namespace
