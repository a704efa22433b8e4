#include "GridLabelAnnotationView.h"
#include "Coordinate.h"

#include <QImage>
#include <QPainter>

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>

namespace {

const QVariant annotation = QVariant::fromValue(Coordinate{51.5, -0.12});

TEST(GridLabelAnnotationView, IsAFortyPointSquareKeepingAnEarlierOriginAndNotOpaque)
{
    const GridLabelAnnotationView view(annotation, QStringLiteral("grid"));
    EXPECT_EQ(view.frame(), QRectF(0, 0, 40, 40));
    EXPECT_FALSE(view.isOpaque()); // the corners outside the disc show the map
    const GridLabelAnnotationView framed(annotation, QString(), QRectF(12.5, -3, 300, 0.5));
    EXPECT_EQ(framed.frame(), QRectF(12.5, -3, 40, 40));
}

TEST(GridLabelAnnotationView, DrawRectPrintsTheRectangleAndFillsAGreenDisc)
{
    const GridLabelAnnotationView view(annotation);
    QImage image(40, 40, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QImage shifted = image;
    testing::internal::CaptureStdout();
    for (auto [target, rect] : {std::pair{&image, QRectF(0, 0, 40, 40)},
                                std::pair{&shifted, QRectF(0.5, 1.25, 40, 40)}}) {
        QPainter painter(target);
        view.drawRect(painter, rect);
    }
    EXPECT_EQ(testing::internal::GetCapturedStdout(),
              "{{0, 0}, {40, 40}}\n{{0.5, 1.25}, {40, 40}}\n");
    // The disc's area: pi · 20² pixels, give or take its antialiased rim.
    double covered = 0;
    for (int y = 0; y < 40; ++y)
        for (int x = 0; x < 40; ++x)
            covered += image.pixelColor(x, y).alphaF();
    EXPECT_NEAR(covered, std::numbers::pi * 400.0, 12.0);
    EXPECT_EQ(image.pixelColor(2, 20), QColor(Qt::green));
    EXPECT_EQ(shifted.pixelColor(20, 21), QColor(Qt::green));
    EXPECT_EQ(shifted.pixelColor(0, 1).alpha(), 0); // outside the disc moved with the rectangle
}

TEST(GridLabelAnnotationViewDeathTest, CannotBeDecoded)
{
    EXPECT_DEATH(GridLabelAnnotationView::fromArchive(QByteArray("archive")), "Cannot decode");
}

} // namespace
