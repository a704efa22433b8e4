#include "MbtilesFile.h"

#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSet>
#include <QSqlDriver>
#include <QSqlError>
#include <QVariant>

#include <sqlite3.h>

#include <algorithm>
#include <atomic>
#include <cmath>

namespace {

// SQLite's primary result codes, which Qt's driver passes on as the native error code.
constexpr int sqliteBusy = 5;
constexpr int sqliteLocked = 6;
constexpr int sqliteReadOnly = 8;
constexpr int sqliteInterrupt = 9;
constexpr int sqliteCorrupt = 11;
constexpr int sqliteFull = 13;
constexpr int sqliteNotADatabase = 26;

// The application id the MBTiles format asks files to carry in their header: "MPBX".
constexpr int mbtilesApplicationId = 0x4d504258;

QString connectionName()
{
    static std::atomic<quint64> next{0};
    return QStringLiteral("veltor-mbtiles-%1").arg(next.fetch_add(1));
}

QString shown(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

QString missingText(const QString &path)
{
    //: A map file the user named is not there; %1 is its path
    //% "There is no file %1."
    return qtTrId("mbtiles.missing").arg(shown(path));
}

QString notMbtilesText(const QString &path)
{
    //: A file the user named as a map is something else; %1 is its path
    //% "%1 is not an MBTiles file."
    return qtTrId("mbtiles.not-mbtiles").arg(shown(path));
}

QString vectorText(const QString &path)
{
    //: %1 is the path of a map file whose tiles are vector data, which the app cannot draw
    //% "%1 holds vector tiles; only MBTiles files of PNG, JPEG or WebP images can be shown."
    return qtTrId("mbtiles.vector").arg(shown(path));
}

// Why an SQL statement failed, in the user's language; SQLite's own text only where no better
// one exists.
QString describe(const QSqlError &error, const QString &path, bool writing)
{
    bool isNumber = false;
    const int code = error.nativeErrorCode().toInt(&isNumber) & 0xff;
    switch (isNumber ? code : -1) {
    case sqliteBusy:
    case sqliteLocked:
        //: %1 is the path of a map file that another program is writing
        //% "%1 is locked by another program."
        return qtTrId("mbtiles.locked").arg(shown(path));
    case sqliteNotADatabase:
        return notMbtilesText(path);
    case sqliteCorrupt:
        //: %1 is the path of a map file whose contents are broken, e.g. cut short
        //% "%1 is damaged."
        return qtTrId("mbtiles.damaged").arg(shown(path));
    case sqliteFull:
        //: %1 is the path of a map file being written
        //% "%1 could not be written: the disk is full."
        return qtTrId("mbtiles.disk-full").arg(shown(path));
    case sqliteInterrupt:
        //: %1 is the path of a map file whose reads do not finish in time (e.g. a hostile file)
        //% "%1 takes too long to read; it is not a map file Veltor can use."
        return qtTrId("mbtiles.too-slow").arg(shown(path));
    case sqliteReadOnly:
        //: %1 is the path of a map file being written
        //% "%1 could not be written: it is read-only."
        return qtTrId("mbtiles.read-only").arg(shown(path));
    default:
        break;
    }
    const QString reason = error.databaseText().isEmpty() ? error.text() : error.databaseText();
    if (writing) {
        //: %1 is the path of a map file, %2 the system's reason (in English)
        //% "%1 could not be written: %2"
        return qtTrId("mbtiles.write-failed").arg(shown(path), reason);
    }
    //: %1 is the path of a map file, %2 the system's reason (in English)
    //% "%1 cannot be read: %2"
    return qtTrId("mbtiles.read-failed").arg(shown(path), reason);
}

// Attribution is often HTML with a link; the map shows plain text.
QString plainText(QString text)
{
    if (!text.contains(u'<') && !text.contains(u'&'))
        return text.simplified();
    static const QRegularExpression tags(QStringLiteral("<[^>]*>"));
    text.remove(tags);
    for (const auto &[entity, character] :
         {std::pair(u"&copy;", u"©"), std::pair(u"&nbsp;", u" "), std::pair(u"&lt;", u"<"),
          std::pair(u"&gt;", u">"), std::pair(u"&quot;", u"\""), std::pair(u"&#39;", u"'"),
          std::pair(u"&amp;", u"&")})
        text.replace(QString::fromUtf16(entity), QString::fromUtf16(character));
    return text.simplified();
}

std::optional<MbtilesFile::Bounds> parseBounds(const QString &text)
{
    const QStringList parts = text.split(u',');
    if (parts.size() != 4)
        return std::nullopt;
    double values[4];
    for (int i = 0; i < 4; ++i) {
        bool ok = false;
        values[i] = parts[i].trimmed().toDouble(&ok);
        if (!ok || !std::isfinite(values[i]))
            return std::nullopt;
    }
    const MbtilesFile::Bounds bounds{values[0], values[1], values[2], values[3]};
    if (bounds.west < -180.0 || bounds.east > 180.0 || bounds.south < -90.0 ||
        bounds.north > 90.0 || !(bounds.west < bounds.east) || !(bounds.south < bounds.north))
        return std::nullopt;
    return bounds;
}

bool validTile(int z, int x, int y)
{
    if (z < 0 || z > MbtilesFile::maxFileZoomLevel)
        return false;
    const qint64 across = qint64(1) << z;
    return x >= 0 && x < across && y >= 0 && y < across;
}

// MBTiles rows count from the south.
int fileRow(int z, int y)
{
    return int((qint64(1) << z) - 1 - y);
}

} // namespace

MbtilesFile::MbtilesFile(const QString &path, const QString &connectionName)
    : m_path(path), m_connectionName(connectionName)
{
}

MbtilesFile::~MbtilesFile()
{
    // Every query of the connection must be gone before the connection is removed.
    m_tileQuery.reset();
    if (m_database.isOpen())
        m_database.close();
    m_database = QSqlDatabase();
    QSqlDatabase::removeDatabase(m_connectionName);
}

std::unique_ptr<MbtilesFile> MbtilesFile::open(const QString &path, QString *error)
{
    QString problem;
    const QFileInfo info(path);
    if (!info.exists()) {
        problem = missingText(path);
    } else if (!info.isFile()) {
        // A directory, or a FIFO or device that would never end.
        problem = notMbtilesText(path);
    } else {
        std::unique_ptr<MbtilesFile> file(new MbtilesFile(path, connectionName()));
        if (file->openConnection(false, &problem)) {
            file->limitReads(openTimeLimit);
            if (file->checkSchema(false, &problem) && file->readMetadata(&problem) &&
                file->readFirstTile(&problem)) {
                file->limitReads({});
                const QString format = file->m_metadata.format;
                if (format != u"pbf" && format != u"mvt")
                    return file;
                problem = vectorText(path);
            }
        }
    }
    if (error)
        *error = problem;
    return nullptr;
}

std::unique_ptr<MbtilesFile> MbtilesFile::openForWriting(const QString &path, QString *error)
{
    QString problem;
    if (QFileInfo(path).isDir()) {
        problem = notMbtilesText(path);
    } else {
        std::unique_ptr<MbtilesFile> file(new MbtilesFile(path, connectionName()));
        if (file->openConnection(true, &problem) && file->checkSchema(true, &problem) &&
            file->readMetadata(&problem))
            return file;
    }
    if (error)
        *error = problem;
    return nullptr;
}

bool MbtilesFile::openConnection(bool writable, QString *error)
{
    m_database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_connectionName);
    if (!m_database.isValid()) {
        //: The part of Qt that reads SQLite databases is not installed
        //% "MBTiles files cannot be read: Qt's SQLite driver is missing."
        *error = qtTrId("mbtiles.no-driver");
        return false;
    }
    m_database.setDatabaseName(m_path);
    QString options = QStringLiteral("QSQLITE_BUSY_TIMEOUT=%1").arg(busyTimeoutMs);
    if (!writable)
        options += QStringLiteral(";QSQLITE_OPEN_READONLY");
    m_database.setConnectOptions(options);
    if (!m_database.open()) {
        *error = describe(m_database.lastError(), m_path, writable);
        return false;
    }
    // SQLite asks between steps of a statement whether to go on: not past the deadline.
    const QVariant handle = m_database.driver()->handle();
    if (handle.isValid() && qstrcmp(handle.typeName(), "sqlite3*") == 0) {
        if (sqlite3 *const connection = *static_cast<sqlite3 *const *>(handle.constData()))
            sqlite3_progress_handler(connection, 1000, &MbtilesFile::progress, this);
    }
    return true;
}

int MbtilesFile::progress(void *file)
{
    return std::chrono::steady_clock::now() > static_cast<MbtilesFile *>(file)->m_deadline;
}

void MbtilesFile::limitReads(std::chrono::milliseconds limit) const
{
    m_deadline = limit.count() > 0 ? std::chrono::steady_clock::now() + limit
                                   : std::chrono::steady_clock::time_point::max();
}

bool MbtilesFile::readFirstTile(QString *error)
{
    // A tiles view can read its metadata and still never give a tile.
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    if (!query.exec(QStringLiteral("SELECT tile_data FROM tiles LIMIT 1"))) {
        *error = describe(query.lastError(), m_path, false);
        return false;
    }
    query.next();
    if (query.lastError().isValid()) {
        *error = describe(query.lastError(), m_path, false);
        return false;
    }
    return true;
}

bool MbtilesFile::checkSchema(bool writable, QString *error)
{
    // The first read of the file: this is where a locked, damaged or foreign file shows.
    QSqlQuery query(m_database);
    if (!query.exec(QStringLiteral("SELECT lower(name) FROM sqlite_master "
                                   "WHERE type IN ('table', 'view')"))) {
        *error = describe(query.lastError(), m_path, false);
        return false;
    }
    QSet<QString> tables;
    while (query.next())
        tables.insert(query.value(0).toString());
    query.finish();
    if (tables.isEmpty() && writable)
        return createSchema(error);

    const std::pair<QString, QStringList> required[] = {
        {QStringLiteral("metadata"), {QStringLiteral("name"), QStringLiteral("value")}},
        {QStringLiteral("tiles"),
         {QStringLiteral("zoom_level"), QStringLiteral("tile_column"), QStringLiteral("tile_row"),
          QStringLiteral("tile_data")}}};
    for (const auto &[table, columns] : required) {
        if (!tables.contains(table)) {
            *error = notMbtilesText(m_path);
            return false;
        }
        if (!query.exec(QStringLiteral("PRAGMA table_info(%1)").arg(table))) {
            *error = describe(query.lastError(), m_path, false);
            return false;
        }
        QSet<QString> present;
        while (query.next())
            present.insert(query.value(1).toString().toLower());
        for (const QString &column : columns) {
            if (!present.contains(column)) {
                *error = notMbtilesText(m_path);
                return false;
            }
        }
    }
    return true;
}

bool MbtilesFile::createSchema(QString *error)
{
    const QString statements[] = {
        QStringLiteral("PRAGMA application_id = %1").arg(mbtilesApplicationId),
        QStringLiteral("CREATE TABLE metadata (name TEXT, value TEXT)"),
        QStringLiteral("CREATE UNIQUE INDEX metadata_name ON metadata (name)"),
        QStringLiteral("CREATE TABLE tiles (zoom_level INTEGER, tile_column INTEGER, "
                       "tile_row INTEGER, tile_data BLOB)"),
        QStringLiteral("CREATE UNIQUE INDEX tile_index ON tiles (zoom_level, tile_column, "
                       "tile_row)")};
    if (!beginTransaction()) {
        *error = m_error;
        return false;
    }
    QSqlQuery query(m_database);
    for (const QString &statement : statements) {
        if (!query.exec(statement)) {
            *error = describe(query.lastError(), m_path, true);
            query.finish();
            rollbackTransaction();
            return false;
        }
    }
    if (!commitTransaction()) {
        *error = m_error;
        return false;
    }
    return true;
}

bool MbtilesFile::readMetadata(QString *error)
{
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    if (!query.exec(QStringLiteral("SELECT name, value FROM metadata"))) {
        *error = describe(query.lastError(), m_path, false);
        return false;
    }
    QHash<QString, QString> values;
    while (query.next())
        values.insert(query.value(0).toString().toLower(), query.value(1).toString());
    if (query.lastError().isValid()) {
        *error = describe(query.lastError(), m_path, false);
        return false;
    }

    Metadata metadata;
    metadata.name = values.value(QStringLiteral("name")).trimmed();
    if (metadata.name.isEmpty())
        metadata.name = QFileInfo(m_path).completeBaseName();
    metadata.attribution = plainText(values.value(QStringLiteral("attribution")));
    metadata.format = values.value(QStringLiteral("format")).trimmed().toLower();
    metadata.bounds = parseBounds(values.value(QStringLiteral("bounds")));

    bool minOk = false;
    bool maxOk = false;
    metadata.minZoomLevel = values.value(QStringLiteral("minzoom")).trimmed().toInt(&minOk);
    metadata.maxZoomLevel = values.value(QStringLiteral("maxzoom")).trimmed().toInt(&maxOk);
    if (!minOk || !maxOk) {
        // The index on zoom_level makes these cheap even in a large file.
        if (!query.exec(QStringLiteral("SELECT min(zoom_level), max(zoom_level) FROM tiles"))) {
            *error = describe(query.lastError(), m_path, false);
            return false;
        }
        if (query.next()) {
            if (!minOk)
                metadata.minZoomLevel = query.value(0).toInt();
            if (!maxOk)
                metadata.maxZoomLevel = query.value(1).toInt();
        }
    }
    metadata.minZoomLevel = std::clamp(metadata.minZoomLevel, 0, maxFileZoomLevel);
    metadata.maxZoomLevel =
        std::clamp(metadata.maxZoomLevel, metadata.minZoomLevel, maxFileZoomLevel);
    m_metadata = std::move(metadata);
    return true;
}

bool MbtilesFile::fail(const QSqlQuery &query, bool writing) const
{
    m_error = describe(query.lastError(), m_path, writing);
    return false;
}

std::optional<QString> MbtilesFile::metadata(const QString &name) const
{
    QSqlQuery query(m_database);
    query.prepare(QStringLiteral("SELECT value FROM metadata WHERE name = ?"));
    query.addBindValue(name);
    if (!query.exec()) {
        fail(query, false);
        return std::nullopt;
    }
    if (!query.next())
        return std::nullopt;
    return query.value(0).toString();
}

std::optional<QByteArray> MbtilesFile::tile(int z, int x, int y) const
{
    if (!validTile(z, x, y))
        return std::nullopt;
    limitReads(tileTimeLimit);
    const auto lifted = qScopeGuard([this] { limitReads({}); });
    if (!m_tileQuery) {
        m_tileQuery.emplace(m_database);
        m_tileQuery->setForwardOnly(true);
        m_tileQuery->prepare(QStringLiteral("SELECT tile_data FROM tiles WHERE zoom_level = ? "
                                            "AND tile_column = ? AND tile_row = ?"));
    }
    QSqlQuery &query = *m_tileQuery;
    query.bindValue(0, z);
    query.bindValue(1, x);
    query.bindValue(2, fileRow(z, y));
    if (!query.exec()) {
        fail(query, false);
        return std::nullopt;
    }
    std::optional<QByteArray> data;
    if (query.next())
        data = query.value(0).toByteArray();
    else if (query.lastError().isValid())
        fail(query, false);
    // Else the statement would keep its read lock, and a writer would wait for it.
    query.finish();
    return data;
}

bool MbtilesFile::hasTile(int z, int x, int y) const
{
    if (!validTile(z, x, y))
        return false;
    limitReads(tileTimeLimit);
    const auto lifted = qScopeGuard([this] { limitReads({}); });
    QSqlQuery query(m_database);
    query.prepare(QStringLiteral("SELECT 1 FROM tiles WHERE zoom_level = ? AND tile_column = ? "
                                 "AND tile_row = ?"));
    query.addBindValue(z);
    query.addBindValue(x);
    query.addBindValue(fileRow(z, y));
    if (!query.exec())
        return fail(query, false);
    return query.next();
}

bool MbtilesFile::forEachTile(
    const std::function<void(int z, int x, int y, qint64 bytes)> &visit) const
{
    QSqlQuery query(m_database);
    query.setForwardOnly(true);
    if (!query.exec(QStringLiteral("SELECT zoom_level, tile_column, tile_row, "
                                   "length(tile_data) FROM tiles")))
        return fail(query, false);
    while (query.next()) {
        const int z = query.value(0).toInt();
        const int x = query.value(1).toInt();
        if (z < 0 || z > maxFileZoomLevel)
            continue;
        const int y = fileRow(z, query.value(2).toInt());
        if (validTile(z, x, y))
            visit(z, x, y, query.value(3).toLongLong());
    }
    if (query.lastError().isValid())
        return fail(query, false);
    return true;
}

bool MbtilesFile::putTile(int z, int x, int y, const QByteArray &data)
{
    if (!validTile(z, x, y))
        return false;
    QSqlQuery query(m_database);
    query.prepare(QStringLiteral("INSERT OR REPLACE INTO tiles (zoom_level, tile_column, "
                                 "tile_row, tile_data) VALUES (?, ?, ?, ?)"));
    query.addBindValue(z);
    query.addBindValue(x);
    query.addBindValue(fileRow(z, y));
    query.addBindValue(data);
    return query.exec() || fail(query, true);
}

bool MbtilesFile::setMetadata(const QString &name, const QString &value)
{
    // Delete and insert: a file made elsewhere may lack the unique index REPLACE relies on.
    QSqlQuery query(m_database);
    query.prepare(QStringLiteral("DELETE FROM metadata WHERE name = ?"));
    query.addBindValue(name);
    if (!query.exec())
        return fail(query, true);
    query.prepare(QStringLiteral("INSERT INTO metadata (name, value) VALUES (?, ?)"));
    query.addBindValue(name);
    query.addBindValue(value);
    if (!query.exec())
        return fail(query, true);
    QString ignored;
    readMetadata(&ignored);
    return true;
}

bool MbtilesFile::beginTransaction()
{
    if (m_database.transaction())
        return true;
    m_error = describe(m_database.lastError(), m_path, true);
    return false;
}

bool MbtilesFile::commitTransaction()
{
    if (m_database.commit())
        return true;
    m_error = describe(m_database.lastError(), m_path, true);
    return false;
}

void MbtilesFile::rollbackTransaction()
{
    // SQLite may have rolled back by itself after a full disk; nothing is left to undo then.
    m_database.rollback();
}

bool MbtilesFile::setSizeLimit(qint64 bytes)
{
    QSqlQuery query(m_database);
    if (!query.exec(QStringLiteral("PRAGMA page_size")) || !query.next())
        return fail(query, true);
    const qint64 pageSize = std::max<qint64>(query.value(0).toLongLong(), 512);
    // SQLite's own ceiling, 2^30 - 1 pages, is what "no limit" means to it.
    const qint64 pages =
        bytes > 0 ? std::clamp<qint64>(bytes / pageSize, 1, 1073741823) : 1073741823;
    return query.exec(QStringLiteral("PRAGMA max_page_count = %1").arg(pages)) || fail(query, true);
}
