#pragma once

#include "Coordinate.h"

#include <QDateTime>
#include <QImage>
#include <QObject>
#include <QPointer>
#include <QQuickWindow>
#include <QString>
#include <QTimer>
#include <QtQml/qqmlregistration.h>

#include <functional>
#include <optional>

class ApplicationStateSystem;
class LocationManager;
class PreferencesSystem;

// Saves proof of where the user stands, for an activation on a line or a corner: a picture of the
// window and a text file with the UTC time, the point in every notation, the locator at every
// precision, the accuracy, the receiver's fix and satellites, and the position in the cell. Both go to a folder of the user's
// pictures, named by the time; a message says where, or why they could not be written.
class ProofSnapshotController : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(QQuickWindow *window READ window WRITE setWindow NOTIFY windowChanged)
    Q_PROPERTY(QString message READ message NOTIFY messageChanged)

public:
    using Clock = std::function<QDateTime()>;

    // Over the app's shared systems, into Pictures/Veltor, at the current time.
    explicit ProofSnapshotController(QObject *parent = nullptr);
    // The receiver may be null: a source that says nothing of its fix.
    ProofSnapshotController(ApplicationStateSystem &state, PreferencesSystem &preferences,
                            LocationManager *receiver, QString folder, Clock clock,
                            QObject *parent = nullptr);

    QQuickWindow *window() const { return m_window; }
    void setWindow(QQuickWindow *window);
    // What the last save did; cleared after a few seconds.
    QString message() const { return m_message; }

    // The text file's contents for a point at a time.
    QString report(const QDateTime &utc) const;

    // Saves the picture (when there is a window) and the text; answers whether both were written.
    Q_INVOKABLE bool save();

signals:
    void windowChanged();
    void messageChanged();

private:
    void say(const QString &message);

    ApplicationStateSystem &m_state;
    PreferencesSystem &m_preferences;
    LocationManager *m_receiver;
    QString m_folder;
    Clock m_clock;
    QPointer<QQuickWindow> m_window;
    QString m_message;
    QTimer m_messageTimer;
};
