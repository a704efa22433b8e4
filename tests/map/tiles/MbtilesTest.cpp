#include "MbtilesCheck.h"
#include "MbtilesFile.h"
#include "MbtilesTileSource.h"

#include "TestTable.h"

#include <QBuffer>
#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QPainter>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QSqlError>
#include <QTemporaryDir>
#include <QVariant>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <memory>
#include <vector>

namespace {

// A connection of the test's own, apart from the code under test, to make and inspect files.
class Sqlite
{
public:
    explicit Sqlite(const QString &path)
        : m_name(QStringLiteral("mbtiles-test-%1").arg(quintptr(this)))
    {
        m_database = QSqlDatabase::addDatabase(QStringLiteral("QSQLITE"), m_name);
        m_database.setDatabaseName(path);
        EXPECT_TRUE(m_database.open());
    }
    ~Sqlite()
    {
        m_database.close();
        m_database = QSqlDatabase();
        QSqlDatabase::removeDatabase(m_name);
    }

    QVariant exec(const QString &sql, const QVariantList &values = {})
    {
        QSqlQuery query(m_database);
        query.prepare(sql);
        for (const QVariant &value : values)
            query.addBindValue(value);
        EXPECT_TRUE(query.exec()) << query.lastError().text().toStdString();
        return query.next() ? query.value(0) : QVariant();
    }

private:
    QString m_name;
    QSqlDatabase m_database;
};

struct FileTile
{
    int z = 0;
    int column = 0;
    int fileRow = 0; // counted from the south, as the file keeps it
    QByteArray bytes;
};

void makeMbtiles(const QString &path, const QList<std::pair<QString, QString>> &metadata,
                 const std::vector<FileTile> &tiles)
{
    Sqlite file(path);
    file.exec(QStringLiteral("CREATE TABLE metadata (name TEXT, value TEXT)"));
    file.exec(QStringLiteral("CREATE TABLE tiles (zoom_level INTEGER, tile_column INTEGER, "
                             "tile_row INTEGER, tile_data BLOB)"));
    for (const auto &[name, value] : metadata)
        file.exec(QStringLiteral("INSERT INTO metadata VALUES (?, ?)"), {name, value});
    for (const FileTile &tile : tiles)
        file.exec(QStringLiteral("INSERT INTO tiles VALUES (?, ?, ?, ?)"),
                  {tile.z, tile.column, tile.fileRow, tile.bytes});
}

QByteArray encoded(const QImage &image, const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    EXPECT_TRUE(image.save(&buffer, format)) << format;
    return bytes;
}

QImage solid(const char *colour)
{
    QImage image(256, 256, QImage::Format_RGB32);
    image.fill(QColor::fromString(colour));
    return image;
}

// Red, blue, lime and yellow quarters: north-west, north-east, south-west, south-east.
QImage quartered()
{
    QImage image = solid("red");
    QPainter painter(&image);
    painter.fillRect(128, 0, 128, 128, QColor::fromString("blue"));
    painter.fillRect(0, 128, 128, 128, QColor::fromString("lime"));
    painter.fillRect(128, 128, 128, 128, QColor::fromString("yellow"));
    return image;
}

bool waitUntil(const std::function<bool()> &done)
{
    const QDeadlineTimer deadline(5000); // bounds the wait; nothing asserts speed
    while (!done() && !deadline.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 20);
    return done();
}

QString shown(const QString &path)
{
    return QDir::toNativeSeparators(path);
}

TEST(MbtilesTileSource, ServesEachTileFromItsSouthCountedRowInEveryFormatAndFailsWhereItHasNone)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("test.mbtiles"));
    makeMbtiles(path,
                {{QStringLiteral("name"), QStringLiteral("Test")},
                 {QStringLiteral("format"), QStringLiteral("png")},
                 {QStringLiteral("minzoom"), QStringLiteral("1")},
                 {QStringLiteral("maxzoom"), QStringLiteral("2")},
                 {QStringLiteral("attribution"), QStringLiteral("<a href=\"x\">&copy; Test</a>")}},
                {{1, 0, 1, encoded(solid("red"), "PNG")},
                 {1, 0, 0, encoded(solid("blue"), "PNG")},
                 {1, 1, 1, encoded(solid("lime"), "JPEG")},
                 {1, 1, 0, encoded(solid("yellow"), "WEBP")},
                 {2, 0, 3, encoded(quartered(), "PNG")}});
    QString error;
    const std::unique_ptr<MbtilesTileSource> source = MbtilesTileSource::open(path, &error);
    ASSERT_TRUE(source) << error.toStdString();
    EXPECT_EQ(source->attribution(), QStringLiteral("© Test"));
    EXPECT_EQ(source->minZoomLevel(), 1);
    EXPECT_EQ(source->maxZoomLevel(), 2);

    std::vector<std::pair<TileKey, QImage>> answers;
    QObject::connect(
        source.get(), &TileSource::tileReady,
        [&](const TileKey &key, const QImage &image) { answers.emplace_back(key, image); });
    QObject::connect(source.get(), &TileSource::tileFailed,
                     [&](const TileKey &key) { answers.emplace_back(key, QImage()); });
    const QList<QStringList> rows = testTable("map/mbtiles-tiles.tsv");
    for (const QStringList &row : rows)
        source->requestTile({zoomScaleForLevel(row[0].toInt()), row[1].toInt(), row[2].toInt()},
                            1.0);
    ASSERT_TRUE(waitUntil([&] { return answers.size() == std::size_t(rows.size()); }));
    EXPECT_EQ(source->pendingCount(), 0);

    for (const QStringList &row : rows) {
        SCOPED_TRACE(row.join(u' ').toStdString());
        const TileKey key{zoomScaleForLevel(row[0].toInt()), row[1].toInt(), row[2].toInt()};
        const auto answer = std::find_if(answers.begin(), answers.end(),
                                         [&](const auto &answer) { return answer.first == key; });
        ASSERT_NE(answer, answers.end());
        if (row[3] == u"-") {
            EXPECT_TRUE(answer->second.isNull());
            continue;
        }
        ASSERT_FALSE(answer->second.isNull());
        const QColor expected = QColor::fromString(row[3]);
        const QColor actual = answer->second.pixelColor(64, 64);
        // JPEG and WebP are lossy, scaling up blends a little.
        EXPECT_NEAR(actual.red(), expected.red(), 16);
        EXPECT_NEAR(actual.green(), expected.green(), 16);
        EXPECT_NEAR(actual.blue(), expected.blue(), 16);
    }
}

struct BadFile
{
    const char *what;
    std::function<void(const QString &path, std::unique_ptr<Sqlite> &holder)> make;
    const char *messageId;
};

TEST(MbtilesFile, SaysWhyAFileCannotBeOpened)
{
    const auto validFile = [](const QString &path) {
        std::vector<FileTile> tiles;
        QRandomGenerator random(7);
        for (int column = 0; column < 64; ++column) {
            QByteArray noise(4096, '\0');
            random.fillRange(reinterpret_cast<quint32 *>(noise.data()), noise.size() / 4);
            tiles.push_back({6, column, 0, noise});
        }
        makeMbtiles(path, {{QStringLiteral("name"), QStringLiteral("Valid")}}, tiles);
    };
    const auto writeFile = [](const QString &path, const QByteArray &bytes) {
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    };
    const BadFile cases[] = {
        {"missing", [](const QString &, auto &) {}, "mbtiles.missing"},
        {"empty", [&](const QString &path, auto &) { writeFile(path, {}); }, "mbtiles.not-mbtiles"},
        {"random bytes",
         [&](const QString &path, auto &) {
             QByteArray bytes(8192, '\0');
             QRandomGenerator(3).fillRange(reinterpret_cast<quint32 *>(bytes.data()),
                                           bytes.size() / 4);
             writeFile(path, bytes);
         },
         "mbtiles.not-mbtiles"},
        {"cut short",
         [&](const QString &path, auto &) {
             validFile(path);
             QFile::resize(path, QFileInfo(path).size() / 2);
         },
         "mbtiles.damaged"},
        {"another database",
         [](const QString &path, auto &) {
             Sqlite(path).exec(QStringLiteral("CREATE TABLE notes (text TEXT)"));
         },
         "mbtiles.not-mbtiles"},
        {"vector tiles",
         [](const QString &path, auto &) {
             makeMbtiles(path, {{QStringLiteral("format"), QStringLiteral("pbf")}}, {});
         },
         "mbtiles.vector"},
        {"locked",
         [&](const QString &path, std::unique_ptr<Sqlite> &holder) {
             validFile(path);
             holder = std::make_unique<Sqlite>(path);
             holder->exec(QStringLiteral("BEGIN EXCLUSIVE"));
         },
         "mbtiles.locked"},
        // Views whose query never ends: one behind the metadata, one behind the tiles with the
        // zoom range given, so that only the first tile's read meets it.
        {"endless metadata",
         [](const QString &path, auto &) {
             Sqlite file(path);
             file.exec(QStringLiteral(
                 "CREATE VIEW metadata AS WITH RECURSIVE r(n) AS (SELECT 0 UNION ALL "
                 "SELECT n + 1 FROM r) SELECT 'name' AS name, 'x' AS value FROM r WHERE n < 0"));
             file.exec(QStringLiteral("CREATE TABLE tiles (zoom_level INTEGER, tile_column "
                                      "INTEGER, tile_row INTEGER, tile_data BLOB)"));
         },
         "mbtiles.too-slow"},
        {"endless tiles",
         [](const QString &path, auto &) {
             makeMbtiles(path, {{QStringLiteral("minzoom"), QStringLiteral("0")},
                                {QStringLiteral("maxzoom"), QStringLiteral("4")}}, {});
             Sqlite file(path);
             file.exec(QStringLiteral("DROP TABLE tiles"));
             file.exec(QStringLiteral(
                 "CREATE VIEW tiles AS WITH RECURSIVE r(n) AS (SELECT 0 UNION ALL "
                 "SELECT n + 1 FROM r) SELECT 0 AS zoom_level, 0 AS tile_column, 0 AS tile_row, "
                 "x'00' AS tile_data FROM r WHERE n < 0"));
         },
         "mbtiles.too-slow"},
    };
    for (const BadFile &bad : cases) {
        SCOPED_TRACE(bad.what);
        const QTemporaryDir directory;
        const QString path = directory.filePath(QStringLiteral("map.mbtiles"));
        std::unique_ptr<Sqlite> holder;
        bad.make(path, holder);
        // As the app checks a file before it uses or keeps it: on a thread of its own.
        const MbtilesCheck checking(path);
        ASSERT_TRUE(QSignalSpy(&checking, &MbtilesCheck::finished).wait(10000));
        EXPECT_FALSE(checking.result().metadata);
        EXPECT_EQ(checking.result().error, qtTrId(bad.messageId).arg(shown(path)));
    }
}

TEST(MbtilesFile, WritesRowsCountedFromTheSouthAndFailsAsOnAFullDiskBeyondItsSizeLimit)
{
    const QTemporaryDir directory;
    const QString path = directory.filePath(QStringLiteral("kept.mbtiles"));
    QString error;
    std::unique_ptr<MbtilesFile> file = MbtilesFile::openForWriting(path, &error);
    ASSERT_TRUE(file) << error.toStdString();
    ASSERT_TRUE(file->putTile(3, 2, 1, "bytes of a tile"));
    ASSERT_TRUE(file->setMetadata(QStringLiteral("name"), QStringLiteral("Kept")));
    EXPECT_TRUE(file->hasTile(3, 2, 1));
    EXPECT_FALSE(file->hasTile(3, 2, 6));
    ASSERT_TRUE(file->setSizeLimit(1)); // no room beyond what the file has now
    EXPECT_FALSE(file->putTile(1, 0, 0, QByteArray(64 * 1024, 'x')));
    EXPECT_EQ(file->errorString(), qtTrId("mbtiles.disk-full").arg(shown(path)));
    file.reset();

    EXPECT_EQ(Sqlite(path).exec(QStringLiteral("SELECT tile_row FROM tiles")).toInt(), 6);
    const std::unique_ptr<MbtilesFile> reader = MbtilesFile::open(path, &error);
    ASSERT_TRUE(reader) << error.toStdString();
    EXPECT_EQ(reader->tile(3, 2, 1), QByteArray("bytes of a tile"));
    EXPECT_EQ(reader->tile(3, 2, 6), std::nullopt);
    EXPECT_FALSE(reader->hasTile(1, 0, 0));
    EXPECT_EQ(reader->metadata().name, QStringLiteral("Kept"));
}

} // namespace
