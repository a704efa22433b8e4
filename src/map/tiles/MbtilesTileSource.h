#pragma once

#include "MbtilesFile.h"
#include "TileSource.h"

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <memory>
#include <mutex>
#include <thread>
#include <unordered_map>
#include <vector>

// Raster tiles from an MBTiles file on disk. One worker thread, with its own connection to the
// file, reads and decodes them (PNG, JPEG or WebP, whatever the bytes are); every signal comes on
// the GUI thread. A tile the file lacks fails, so the layer's fallback (the basemap) is drawn
// there. Above the file's highest level its tiles are cut and scaled up, for maxOverzoomLevels
// levels; below its lowest level and further up, tiles fail.
class MbtilesTileSource final : public TileSource
{
    Q_OBJECT

public:
    // A 256-pixel tile scaled up 16 times still shows roads; beyond that it is a blur.
    static constexpr int maxOverzoomLevels = 4;

    // The source for a raster MBTiles file, or nothing with the reason in the user's language
    // (see MbtilesFile::open).
    static std::unique_ptr<MbtilesTileSource> open(const QString &path, QString *error,
                                                   QObject *parent = nullptr);
    // The source for a file that MbtilesFile::check has found good.
    static std::unique_ptr<MbtilesTileSource> checked(const QString &path,
                                                      const MbtilesFile::Metadata &metadata,
                                                      QObject *parent = nullptr);
    ~MbtilesTileSource() override;

    const QString &path() const { return m_path; }
    const MbtilesFile::Metadata &metadata() const { return m_metadata; }
    // The file's credit, to show on the map; may be empty.
    const QString &attribution() const { return m_metadata.attribution; }
    int minZoomLevel() const { return m_metadata.minZoomLevel; }
    int maxZoomLevel() const { return m_metadata.maxZoomLevel; }

    bool wholeLevelsOnly() const override { return true; }
    // The device pixel ratio is ignored: tiles come at the file's own size.
    void requestTile(const TileKey &key, double devicePixelRatio) override;
    void cancelTile(const TileKey &key) override;
    int pendingCount() const override { return int(m_pending.size()); }

private:
    struct Request
    {
        TileKey key;
        std::uint64_t id = 0;
    };

    struct Finished
    {
        TileKey key;
        std::uint64_t id = 0;
        QImage image;
    };

    MbtilesTileSource(const QString &path, const MbtilesFile::Metadata &metadata, QObject *parent);

    void work();
    QImage render(const MbtilesFile &file, const TileKey &key) const;
    Q_INVOKABLE void takeFinished();

    const QString m_path;
    const MbtilesFile::Metadata m_metadata;
    std::unordered_map<TileKey, std::uint64_t, TileKeyHash> m_pending; // GUI thread only
    std::uint64_t m_nextId = 1;

    // Shared with the worker, under the mutex.
    std::mutex m_mutex;
    std::condition_variable m_wake;
    std::deque<Request> m_queue;
    std::vector<Finished> m_finished;
    bool m_collectQueued = false;
    bool m_stopping = false;

    std::thread m_worker; // last: started once everything above exists
};
