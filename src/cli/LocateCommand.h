#pragma once

#include "Coordinate.h"
#include "CoordinateFormat.h"
#include "ExactAngle.h"
#include "VeltorFormat.h"

#include <cstdio>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

// veltor-locate: converts coordinates and grid locators for logbooks and scripts, one output line
// of tab-separated fields per query.
class LocateCommand
{
public:
    struct Options
    {
        VeltorFormat chars = VeltorFormat::EightCharacters;
        // --chars was given; --adif writes 6 characters otherwise.
        bool charsGiven = false;
        CoordinateFormat notation = CoordinateFormat::DegreesMinutesSeconds;
        bool lenient = false;
        bool help = false;
        bool version = false;
        // --from: each line also gets the distance (km) and initial bearing (degrees) from here.
        std::optional<Coordinate> from;
        // --contest: that distance as IARU Region 1 VHF contests score it.
        bool contest = false;
        std::vector<std::string> queries;
        // --adif: rewrite the ADIF log in this file ("" or "-" for standard input) instead.
        std::optional<std::string> adif;
    };

    enum ExitStatus { Success = 0, QueryError = 1, UsageError = 2 };

    static const char *usage();
    // Reads the command line (without the program name); on a usage error, says why in *error.
    static std::optional<Options> parseArguments(const std::vector<std::string_view> &arguments,
                                                 std::string *error);

    explicit LocateCommand(Options options);

    // The centre of a well-formed locator of 2 to 12 characters, any case; else says why.
    static std::optional<Coordinate> strictLocatorPoint(std::string_view locator,
                                                        std::string &error);

    // Converts one query: appends its output line to out, or its error line to error.
    bool convert(std::string_view query, std::string &out, std::string &error) const;

    // Runs the queries of the command line, or every line of input when there are none, or
    // rewrites the ADIF log.
    int run(std::FILE *input, std::FILE *output, std::FILE *errors) const;

private:
    // The point a query names: a coordinate, or the centre of a locator's cell. A coordinate
    // read strictly keeps its text's exact value too, for the locator.
    struct Point
    {
        Coordinate coordinate;
        std::optional<std::pair<ExactAngle, ExactAngle>> exact;
    };

    std::optional<Point> pointOf(std::string_view query, std::string &error) const;
    std::optional<Point> coordinatePoint(std::string_view query, std::string &error) const;
    std::optional<Point> locatorPoint(std::string_view query, std::string &error) const;
    bool appendLine(const Point &point, std::string &out, std::string &error) const;

    Options m_options;
};
