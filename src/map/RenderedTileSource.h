#pragma once

#include "TileSource.h"

#include <QThreadPool>

#include <atomic>
#include <functional>
#include <memory>
#include <unordered_map>

// Tiles drawn by a function on a pool of worker threads: the offline basemap and the grid.
// The function must be safe to call from several threads at once.
class RenderedTileSource final : public TileSource
{
    Q_OBJECT

public:
    using Renderer = std::function<QImage(const TileKey &key, double devicePixelRatio)>;

    // threadCount 0: one thread per core.
    explicit RenderedTileSource(Renderer renderer, int threadCount = 0, QObject *parent = nullptr);
    ~RenderedTileSource() override;

    bool wholeLevelsOnly() const override { return false; }
    void requestTile(const TileKey &key, double devicePixelRatio) override;
    void cancelTile(const TileKey &key) override;
    int pendingCount() const override { return int(m_pending.size()); }

    // Blocks until every started tile is drawn; for tests and benchmarks.
    void waitForWorkers() { m_pool.waitForDone(); }

private:
    struct Job
    {
        std::atomic<bool> cancelled{false};
    };

    void finish(const TileKey &key, const std::shared_ptr<Job> &job, const QImage &image);

    const Renderer m_renderer;
    QThreadPool m_pool;
    std::unordered_map<TileKey, std::shared_ptr<Job>, TileKeyHash> m_pending;
};
