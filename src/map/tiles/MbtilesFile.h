#pragma once

#include <QByteArray>
#include <QSqlDatabase>
#include <QSqlQuery>
#include <QString>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>

// One MBTiles file: raster map tiles in an SQLite database with the tables (or views) `metadata`
// (name, value) and `tiles` (zoom_level, tile_column, tile_row, tile_data), read and written
// through Qt SQL's SQLite driver. The file counts rows from the south (TMS); this class takes
// and gives the map's rows, counted from the north.
//
// Each instance has its own connection, and a connection serves only the thread that opened it:
// use an instance on that thread alone, and open another one for another thread.
//
// A file can be hostile (a `tiles` view whose query never ends): reads give up after a time
// limit and the file is refused as too slow, so nothing hangs on it.
class MbtilesFile
{
public:
    // How long a read or write waits for another program's write before calling the file locked.
    static constexpr int busyTimeoutMs = 1000;
    // Levels a file may hold; 2^30 tiles across is beyond any map.
    static constexpr int maxFileZoomLevel = 30;
    // Opening reads the schema, the metadata and a first tile within this time; a tile read
    // later, within the second.
    static constexpr std::chrono::milliseconds openTimeLimit{3000};
    static constexpr std::chrono::milliseconds tileTimeLimit{2000};

    // Degrees of longitude and latitude.
    struct Bounds
    {
        double west = -180.0;
        double south = -85.0511287798;
        double east = 180.0;
        double north = 85.0511287798;

        friend bool operator==(const Bounds &, const Bounds &) = default;
    };

    // What the metadata table says, with the zoom range taken from the tiles where it says none.
    struct Metadata
    {
        QString name;
        QString attribution; // plain text: HTML markup is taken out
        QString format;      // "png", "jpg" or "webp" as written; empty when not given
        int minZoomLevel = 0;
        int maxZoomLevel = 0;
        std::optional<Bounds> bounds;
    };

    ~MbtilesFile();
    MbtilesFile(const MbtilesFile &) = delete;
    MbtilesFile &operator=(const MbtilesFile &) = delete;

    // Opens an existing raster MBTiles file for reading, or says why it cannot, in the user's
    // language: no such file, not an MBTiles file, vector tiles, locked, damaged.
    static std::unique_ptr<MbtilesFile> open(const QString &path, QString *error);
    // What opening a file for reading found (see MbtilesCheck): its metadata, or why not.
    struct Check
    {
        std::optional<Metadata> metadata;
        QString error;
    };
    // Opens the file for reading and writing, making it with the two tables when it is missing.
    static std::unique_ptr<MbtilesFile> openForWriting(const QString &path, QString *error);

    const QString &path() const { return m_path; }
    const Metadata &metadata() const { return m_metadata; }
    // One value of the metadata table as it is now; nothing when the name is not there.
    std::optional<QString> metadata(const QString &name) const;

    // The tile's image bytes, or nothing when the file has no such tile or cannot be read. x and
    // y are the map's column and row at level z, row 0 in the north.
    std::optional<QByteArray> tile(int z, int x, int y) const;
    bool hasTile(int z, int x, int y) const;
    // Calls visit for every tile in the file with the size of its bytes; false on a read error.
    bool forEachTile(const std::function<void(int z, int x, int y, qint64 bytes)> &visit) const;

    // Writes replace what was there. False on a write error (the disk full, the file read-only,
    // locked or gone), with errorString() saying which.
    bool putTile(int z, int x, int y, const QByteArray &data);
    bool setMetadata(const QString &name, const QString &value);
    // Writes between these two reach the disk together, and all of them or none.
    bool beginTransaction();
    bool commitTransaction();
    void rollbackTransaction();
    // Writes that would grow the file beyond this many bytes fail as on a full disk; 0 lifts the
    // limit. The limit never shrinks the file.
    bool setSizeLimit(qint64 bytes);

    // The last error, in the user's language.
    const QString &errorString() const { return m_error; }

private:
    MbtilesFile(const QString &path, const QString &connectionName);

    bool openConnection(bool writable, QString *error);
    bool checkSchema(bool writable, QString *error);
    bool createSchema(QString *error);
    bool readMetadata(QString *error);
    bool readFirstTile(QString *error);
    bool fail(const QSqlQuery &query, bool writing) const;
    // Reads from now on give up at the limit; a zero limit lifts it.
    void limitReads(std::chrono::milliseconds limit) const;
    static int progress(void *file);

    QString m_path;
    QString m_connectionName;
    QSqlDatabase m_database;
    mutable std::optional<QSqlQuery> m_tileQuery;
    Metadata m_metadata;
    mutable QString m_error;
    mutable std::chrono::steady_clock::time_point m_deadline = std::chrono::steady_clock::time_point::max();
};
