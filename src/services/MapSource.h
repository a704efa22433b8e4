#pragma once

#include <QMetaType>
#include <QObject>
#include <QString>
#include <QtGlobal>
#include <QtQml/qqmlregistration.h>

#include <optional>

class UserDefaults;

// Where the map's base tiles come from, as the user chose: the offline basemap, one of the tile
// services Veltor knows with their credits and usage rules, a raster MBTiles file on disk, or a
// tile server given by its URL template. Stored in the settings; the template and credit of a
// custom server keep the keys --tiles has always written.
struct MapSource
{
    Q_GADGET
    QML_VALUE_TYPE(mapSource)
    Q_PROPERTY(Kind kind MEMBER kind)
    Q_PROPERTY(QString path MEMBER path)
    Q_PROPERTY(QString urlTemplate MEMBER urlTemplate)
    Q_PROPERTY(QString attribution MEMBER attribution)

public:
    enum class Kind
    {
        Offline,
        OpenStreetMap,
        OpenTopoMap,
        Mbtiles,
        Custom
    };
    Q_ENUM(Kind)

    // What a tile service allows a download for offline use to take.
    struct DownloadLimits
    {
        int maxZoomLevel = 0;
        qint64 maxTiles = 0;
    };

    static constexpr QLatin1StringView kindKey{"MapSourcePreference"};
    static constexpr QLatin1StringView mbtilesPathKey{"MapMbtilesPathPreference"};
    static constexpr QLatin1StringView templateKey{"MapTileURLTemplate"};
    static constexpr QLatin1StringView attributionKey{"MapTileAttribution"};

    Kind kind = Kind::Offline;
    // The MBTiles file, or the custom server's URL template and credit.
    QString path;
    QString urlTemplate;
    QString attribution;

    // What the settings hold (PreferencesSystem reads and writes it); a store written before
    // there was a choice reads as the custom server when it names one, and anything unreadable
    // as the offline basemap.
    static MapSource read(const UserDefaults &defaults);
    void write(UserDefaults &defaults) const;

    // Whether tiles come over the network.
    bool isOnline() const;
    // The URL template of an online source, the presets' own or the custom one.
    QString tileTemplate() const;
    // The credit the source asks to be shown; for a custom server without one, its host.
    QString credit() const;
    // Highest zoom level the service draws.
    int maxZoomLevel() const;
    // How much of it may be kept for offline use: nothing for sources already on disk.
    std::optional<DownloadLimits> downloadLimits() const;

    // The name of a kind, in the user's language, for the picker and the settings row.
    static QString name(Kind kind);

    friend bool operator==(const MapSource &, const MapSource &) = default;
};
