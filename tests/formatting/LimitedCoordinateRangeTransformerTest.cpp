#include "LimitedCoordinateRangeTransformer.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace {

struct ClampCase
{
    Coordinate input;
    Coordinate expected;
};

class ClampTest : public testing::TestWithParam<ClampCase>
{
};

TEST_P(ClampTest, DefaultLimitsAreTheGlobe)
{
    const LimitedCoordinateRangeTransformer transformer;
    EXPECT_EQ(transformer.transformedCoordinate(GetParam().input), GetParam().expected);
}

INSTANTIATE_TEST_SUITE_P(Limits, ClampTest,
                         testing::Values(ClampCase{{95, 200}, {90, 180}},
                                         ClampCase{{-95, -200}, {-90, -180}},
                                         ClampCase{{45, 10}, {45, 10}},
                                         ClampCase{{90, -180}, {90, -180}}));

TEST(LimitedCoordinateRangeTransformerTest, CrossedLimitsLetTheMinimumDecide)
{
    LimitedCoordinateRangeTransformer transformer;
    transformer.setMinimumLatitude(10);
    transformer.setMaximumLatitude(0);
    EXPECT_EQ(transformer.transformedCoordinate({5, 0}).latitude, 10);
    EXPECT_EQ(transformer.transformedCoordinate({20, 0}).latitude, 0);
}

TEST(LimitedCoordinateRangeTransformerTest, NotANumberPassesThrough)
{
    const LimitedCoordinateRangeTransformer transformer;
    const Coordinate out =
        transformer.transformedCoordinate({std::numeric_limits<double>::quiet_NaN(), 500});
    EXPECT_TRUE(std::isnan(out.latitude));
    EXPECT_EQ(out.longitude, 180);
}

TEST(LimitedCoordinateRangeTransformerTest, MapLimitsClampThePoles)
{
    LimitedCoordinateRangeTransformer transformer;
    transformer.setMaximumLatitude(85);
    transformer.setMinimumLatitude(-85);
    EXPECT_EQ(transformer.transformedCoordinate({89.9, 179.9}), (Coordinate{85, 179.9}));
    EXPECT_EQ(transformer.transformedCoordinate({-90, -180}), (Coordinate{-85, -180}));
}

// A subclass that narrows the limits through the accessors changes the clamping.
class NorthernHemisphereOnly : public LimitedCoordinateRangeTransformer
{
public:
    double minimumLatitude() const override { return 0; }
};

TEST(LimitedCoordinateRangeTransformerTest, LimitsAreReadThroughTheAccessors)
{
    const NorthernHemisphereOnly transformer;
    EXPECT_EQ(transformer.transformedCoordinate({-30, 10}), (Coordinate{0, 10}));
}

TEST(LimitedCoordinateRangeTransformerTest, ValuesMustHoldCoordinates)
{
    const LimitedCoordinateRangeTransformer transformer;
    const QVariant out = transformer.transformedValue(QVariant::fromValue(Coordinate{95, 200}));
    ASSERT_EQ(out.metaType(), LimitedCoordinateRangeTransformer::transformedValueClass());
    EXPECT_EQ(out.value<Coordinate>(), (Coordinate{90, 180}));
    EXPECT_FALSE(transformer.transformedValue(QStringLiteral("95, 200")).isValid());
    EXPECT_FALSE(transformer.transformedValue(QVariant()).isValid());
    EXPECT_FALSE(LimitedCoordinateRangeTransformer::allowsReverseTransformation());
}

} // namespace
