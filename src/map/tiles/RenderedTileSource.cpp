#include "RenderedTileSource.h"

#include "PoolHandOver.h"

#include <QMetaObject>
#include <QRunnable>
#include <QThread>

namespace {

// One tile to draw, handed to a worker of the pool.
class TileJob final : public QRunnable
{
public:
    explicit TileJob(std::function<void()> work) : m_work(std::move(work)) { markHandOver(this); }

    void run() override
    {
        acceptHandOver(this);
        m_work();
    }

private:
    std::function<void()> m_work;
};

} // namespace

RenderedTileSource::RenderedTileSource(Renderer renderer, int threadCount, QObject *parent)
    : TileSource(parent), m_renderer(std::move(renderer))
{
    m_pool.setMaxThreadCount(threadCount > 0 ? threadCount : QThread::idealThreadCount());
}

RenderedTileSource::~RenderedTileSource()
{
    for (auto &[key, job] : m_pending)
        job->cancelled = true;
    m_pool.clear();
    // Workers hold no pointer into this object except through the queued call below, which
    // QObject's destructor discards; waiting keeps the renderer alive while they run.
    m_pool.waitForDone();
    // Taken under the lock so the workers' last writes are seen to come first.
    const std::lock_guard lock(m_finishedMutex);
    m_finished.clear();
}

void RenderedTileSource::requestTile(const TileKey &key, double devicePixelRatio)
{
    if (m_pending.contains(key))
        return;
    auto job = std::make_shared<Job>();
    // A cancelled tile still queued costs a worker one flag check; taking it back out of the
    // pool by pointer could hit a newer runnable at a reused address.
    m_pool.start(new TileJob([this, key, devicePixelRatio, job] {
        if (job->cancelled)
            return;
        QImage image = m_renderer(key, devicePixelRatio);
        {
            // Taken for a cancelled tile too: the destructor waits for the pool and then takes
            // this lock, so every worker's use of the renderer is seen to end before it goes.
            const std::lock_guard lock(m_finishedMutex);
            if (job->cancelled)
                return;
            m_finished.push_back({key, job, std::move(image)});
            // By name: the queued call carries no object of ours across threads, the list does.
            // Posted under the lock, so that this last use of the object is seen to come
            // before the destructor, which takes the lock once the pool is done.
            QMetaObject::invokeMethod(this, "takeFinished", Qt::QueuedConnection);
        }
    }));
    m_pending.emplace(key, std::move(job));
}

void RenderedTileSource::cancelTile(const TileKey &key)
{
    const auto found = m_pending.find(key);
    if (found == m_pending.end())
        return;
    found->second->cancelled = true;
    m_pending.erase(found);
}

void RenderedTileSource::takeFinished()
{
    std::vector<Finished> finished;
    {
        const std::lock_guard lock(m_finishedMutex);
        finished.swap(m_finished);
    }
    for (const Finished &tile : finished) {
        const auto found = m_pending.find(tile.key);
        if (found == m_pending.end() || found->second != tile.job)
            continue; // cancelled, perhaps asked for again since
        m_pending.erase(found);
        if (tile.image.isNull())
            emit tileFailed(tile.key);
        else
            emit tileReady(tile.key, tile.image);
    }
}
