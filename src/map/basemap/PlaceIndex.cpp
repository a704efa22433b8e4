#include "PlaceIndex.h"

#include "BinaryReader.h"

#include <QFile>

#include <algorithm>
#include <cmath>
#include <cstring>

namespace {

constexpr char magic[9] = "VPLACEIX";
constexpr std::uint32_t formatVersion = 1;
constexpr std::uint32_t capitalFlag = 1;
// A damaged header must not make qUncompress reserve gigabytes: the real payload is about 3 MB.
constexpr std::uint32_t largestPayload = 64u << 20;
// Places are stored as map points of the world's square.
constexpr auto worldSize = std::uint32_t(mapWorldWidth);

bool inRange(double latitude, double longitude)
{
    return std::fabs(latitude) <= 90.0 && std::fabs(longitude) <= 180.0;
}

} // namespace

std::shared_ptr<const PlaceIndex> PlaceIndex::load(const QString &path)
{
    return loadBinaryFile<PlaceIndex>(path);
}

std::shared_ptr<const PlaceIndex> PlaceIndex::fromBytes(QByteArrayView bytes)
{
    const std::optional<DataFilePayload> payload =
        DataFilePayload::open(bytes, magic, formatVersion, largestPayload);
    if (!payload)
        return nullptr;

    const QByteArrayView stored = payload->bytes();
    BinaryReader reader(stored.data(), stored.data() + stored.size());
    const std::uint32_t count = reader.varint();
    // Each place takes 13 bytes at least: level, flags, population, x, y, name length, name.
    if (!reader.ok() || count > reader.remaining() / 13)
        return nullptr;
    const auto *levels = reinterpret_cast<const unsigned char *>(reader.take(count));
    const auto *flags = reinterpret_cast<const unsigned char *>(reader.take(count));
    std::vector<std::uint32_t> populations(count);
    for (std::uint32_t &population : populations)
        population = reader.varint();
    const char *xs = reader.take(std::size_t(count) * 4);
    const char *ys = reader.take(std::size_t(count) * 4);
    std::vector<std::uint32_t> nameLengths(count);
    std::size_t nameBytes = 0;
    for (std::uint32_t &length : nameLengths) {
        length = reader.varint();
        nameBytes += length;
    }
    if (!reader.ok() || nameBytes != reader.remaining())
        return nullptr;
    const char *names = reader.take(nameBytes);

    std::shared_ptr<PlaceIndex> index(new PlaceIndex);
    index->m_places.reserve(count);
    index->m_names = QByteArray(names, qsizetype(nameBytes));
    std::uint32_t offset = 0;
    int previousLevel = 0;
    for (std::uint32_t i = 0; i < count; offset += nameLengths[i], ++i) {
        const std::uint32_t x = littleEndian32(xs + 4 * i);
        const std::uint32_t y = littleEndian32(ys + 4 * i);
        if (levels[i] < previousLevel || levels[i] > lastZoomLevel || flags[i] > capitalFlag ||
            nameLengths[i] == 0 || nameLengths[i] > 255 || x > worldSize || y > worldSize)
            return nullptr;
        previousLevel = levels[i];
        index->m_places.push_back({std::int32_t(x), std::int32_t(y), populations[i], offset,
                                   std::uint8_t(nameLengths[i]), levels[i],
                                   flags[i] == capitalFlag});
    }
    return index;
}

std::shared_ptr<const PlaceIndex> PlaceIndex::fromEntries(const std::vector<Entry> &entries)
{
    std::shared_ptr<PlaceIndex> index(new PlaceIndex);
    int previousLevel = 0;
    for (const Entry &entry : entries) {
        const QByteArray name = entry.name.toUtf8();
        if (entry.firstLevel < previousLevel || entry.firstLevel > lastZoomLevel ||
            name.isEmpty() || name.size() > 255 || !inRange(entry.latitude, entry.longitude))
            return nullptr;
        previousLevel = entry.firstLevel;
        const MapPoint point = mapPointForCoordinate({entry.latitude, entry.longitude});
        if (point.y < 0.0 || point.y > mapWorldHeight)
            continue;
        index->m_places.push_back({std::int32_t(std::lround(point.x)),
                                   std::int32_t(std::lround(point.y)), entry.population,
                                   std::uint32_t(index->m_names.size()), std::uint8_t(name.size()),
                                   std::uint8_t(entry.firstLevel), entry.capital});
        index->m_names.append(name);
    }
    return index;
}

std::shared_ptr<const PlaceIndex> PlaceIndex::shared()
{
    static const std::shared_ptr<const PlaceIndex> index = load();
    return index;
}

QString PlaceIndex::attribution()
{
    //: Credit shown on the offline map for its place names; GeoNames is a name, CC BY 4.0 a licence
    //% "Places © GeoNames (CC BY 4.0)"
    return qtTrId("map.attribution.places");
}

QString PlaceIndex::name(std::size_t index) const
{
    const Place &place = m_places[index];
    return QString::fromUtf8(m_names.constData() + place.nameOffset, place.nameLength);
}

std::size_t PlaceIndex::candidateCount(int zoomLevel) const
{
    return std::size_t(
        std::upper_bound(m_places.begin(), m_places.end(), zoomLevel,
                         [](int level, const Place &place) { return level < place.firstLevel; }) -
        m_places.begin());
}
