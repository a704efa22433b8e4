#include "LimitedCoordinateRangeTransformer.h"

#include "TestTable.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

// A subclass that narrows the limits through the accessors changes the clamping.
class NorthernHemisphereOnly : public LimitedCoordinateRangeTransformer
{
public:
    double minimumLatitude() const override { return 0; }
};

TEST(LimitedCoordinateRangeTransformerTest, ClampsIntoTheLimits)
{
    const LimitedCoordinateRangeTransformer globe;
    // The default limits are the globe.
    for (const QStringList &row : testTable("formatting/globe-clamping.tsv"))
        EXPECT_EQ(globe.transformedCoordinate({row[0].toDouble(), row[1].toDouble()}),
                  (Coordinate{row[2].toDouble(), row[3].toDouble()}));
    // Not a number passes through.
    const Coordinate out =
        globe.transformedCoordinate({std::numeric_limits<double>::quiet_NaN(), 500});
    EXPECT_TRUE(std::isnan(out.latitude));
    EXPECT_EQ(out.longitude, 180);
    // Only coordinates are transformed.
    const QVariant value = globe.transformedValue(QVariant::fromValue(Coordinate{95, 200}));
    ASSERT_EQ(value.metaType(), LimitedCoordinateRangeTransformer::transformedValueClass());
    EXPECT_EQ(value.value<Coordinate>(), (Coordinate{90, 180}));
    EXPECT_FALSE(globe.transformedValue(QStringLiteral("95, 200")).isValid());
    EXPECT_FALSE(globe.transformedValue(QVariant()).isValid());
    EXPECT_EQ(NorthernHemisphereOnly().transformedCoordinate({-30, 10}), (Coordinate{0, 10}));
    // Limits set clamp too, and crossed ones let the minimum decide.
    LimitedCoordinateRangeTransformer transformer;
    transformer.setMaximumLatitude(85);
    transformer.setMinimumLatitude(-85);
    EXPECT_EQ(transformer.transformedCoordinate({89.9, 179.9}), (Coordinate{85, 179.9}));
    EXPECT_EQ(transformer.transformedCoordinate({-90, -180}), (Coordinate{-85, -180}));
    transformer.setMinimumLatitude(10);
    transformer.setMaximumLatitude(0);
    EXPECT_EQ(transformer.transformedCoordinate({5, 0}).latitude, 10);
    EXPECT_EQ(transformer.transformedCoordinate({20, 0}).latitude, 0);
}

} // namespace
