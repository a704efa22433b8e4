#include "RenderedTileSource.h"

#include <QMetaObject>
#include <QRunnable>
#include <QThread>

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
}

void RenderedTileSource::requestTile(const TileKey &key, double devicePixelRatio)
{
    if (m_pending.contains(key))
        return;
    auto job = std::make_shared<Job>();
    // A cancelled tile still queued costs a worker one flag check; taking it back out of the
    // pool by pointer could hit a newer runnable at a reused address.
    m_pool.start(QRunnable::create([this, key, devicePixelRatio, job] {
        if (job->cancelled)
            return;
        QImage image = m_renderer(key, devicePixelRatio);
        if (job->cancelled)
            return;
        QMetaObject::invokeMethod(
            this, [this, key, job, image = std::move(image)] { finish(key, job, image); },
            Qt::QueuedConnection);
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

void RenderedTileSource::finish(const TileKey &key, const std::shared_ptr<Job> &job,
                                const QImage &image)
{
    const auto found = m_pending.find(key);
    if (found == m_pending.end() || found->second != job)
        return; // cancelled, perhaps asked for again since
    m_pending.erase(found);
    if (image.isNull())
        emit tileFailed(key);
    else
        emit tileReady(key, image);
}
