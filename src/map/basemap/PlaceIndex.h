#pragma once

#include "MapProjection.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QString>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

// The named places of the offline basemap (GeoNames, every place of 1,000 people or more; made by
// tools/places/convert.mjs, bytes described in resources/places/README.md), biggest first.
// Immutable once loaded, so any number of threads may read one at once.
class PlaceIndex
{
public:
    // Zoom levels run to 22; every place is a candidate by this one at the latest.
    static constexpr int lastZoomLevel = 22;

    // A place as the file gives it.
    struct Entry
    {
        QString name;
        double latitude = 0.0;
        double longitude = 0.0;
        std::uint32_t population = 0;
        bool capital = false; // a country's capital
        int firstLevel = 0;   // the first zoom level its name may show at
    };

    struct Place
    {
        std::int32_t x = 0; // map points, rounded
        std::int32_t y = 0;
        std::uint32_t population = 0;
        std::uint32_t nameOffset = 0;
        std::uint8_t nameLength = 0; // bytes of UTF-8
        std::uint8_t firstLevel = 0;
        bool capital = false;

        MapPoint point() const { return {double(x), double(y)}; }
    };

    // nullptr when the file is missing, short or damaged.
    static std::shared_ptr<const PlaceIndex>
    load(const QString &path = QStringLiteral(":/places/geonames-cities1000.vpl"));
    static std::shared_ptr<const PlaceIndex> fromBytes(QByteArrayView bytes);
    // Entries biggest first, so their first levels never fall; nullptr when they do, or when a
    // name is empty or over 255 bytes, or a coordinate out of range. Places off the map's square
    // are left out.
    static std::shared_ptr<const PlaceIndex> fromEntries(const std::vector<Entry> &entries);
    // The embedded index, loaded on first use; null only if the built-in resource is broken.
    static std::shared_ptr<const PlaceIndex> shared();

    // The credit the map shows for the names.
    static QString attribution();

    std::size_t size() const { return m_places.size(); }
    const Place &place(std::size_t index) const { return m_places[index]; }
    QString name(std::size_t index) const;
    // How many places (the first ones) are candidates at a zoom level.
    std::size_t candidateCount(int zoomLevel) const;

private:
    PlaceIndex() = default;

    std::vector<Place> m_places;
    QByteArray m_names;
};
