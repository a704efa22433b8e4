#pragma once

#include <QObject>
#include <QString>
#include <QtQml/qqmlregistration.h>

#include <functional>

// One row of a format picker: what the choice looks like, what a screen reader says for it,
// and whether it is the current one.
class FormatChoice : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Choices are made by their picker")
    Q_PROPERTY(QString text READ text NOTIFY changed)
    Q_PROPERTY(QString accessibilityLabel READ accessibilityLabel NOTIFY changed)
    Q_PROPERTY(bool checked READ isChecked NOTIFY changed)

public:
    FormatChoice(std::function<void()> select, QObject *parent);

    QString text() const { return m_text; }
    QString accessibilityLabel() const { return m_accessibilityLabel; }
    bool isChecked() const { return m_checked; }
    void set(const QString &text, const QString &accessibilityLabel, bool checked);

    // Makes this the setting's value.
    Q_INVOKABLE void select();

signals:
    void changed();

private:
    std::function<void()> m_select;
    QString m_text;
    QString m_accessibilityLabel;
    bool m_checked = false;
};
