#pragma once

#include "TileSource.h"

#include <QThreadPool>

#include <atomic>
#include <functional>
#include <memory>
#include <mutex>
#include <unordered_map>
#include <vector>

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

    struct Finished
    {
        TileKey key;
        std::shared_ptr<Job> job;
        QImage image;
    };

    Q_INVOKABLE void takeFinished();

    const Renderer m_renderer;
    QThreadPool m_pool;
    std::unordered_map<TileKey, std::shared_ptr<Job>, TileKeyHash> m_pending;
    // Drawn tiles on their way from the workers to the GUI thread.
    std::mutex m_finishedMutex;
    std::vector<Finished> m_finished;
};
