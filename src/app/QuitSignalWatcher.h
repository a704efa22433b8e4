#pragma once

#include <QObject>

class QSocketNotifier;

// Turns SIGTERM and SIGINT into a normal quit of the event loop, so the app closes as it does
// when its window closes. The previous handlers come back when the watcher is destroyed.
class QuitSignalWatcher : public QObject
{
    Q_OBJECT

public:
    explicit QuitSignalWatcher(QObject *parent = nullptr);
    ~QuitSignalWatcher() override;

signals:
    void quitRequested(int signalNumber);

private:
    QSocketNotifier *m_notifier = nullptr;
};
