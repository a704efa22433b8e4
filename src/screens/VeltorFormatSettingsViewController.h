#pragma once

#include "FormatPickerViewController.h"

#include <QtQml/qqmlregistration.h>

// The locator precision, from eight characters down to two.
class VeltorFormatSettingsViewController : public FormatPickerViewController
{
    Q_OBJECT
    QML_ELEMENT

public:
    // Over the app's shared preferences.
    explicit VeltorFormatSettingsViewController(QObject *parent = nullptr);
    explicit VeltorFormatSettingsViewController(PreferencesSystem &preferences, QObject *parent = nullptr);
    QString title() const override { return settingTitle(); }
    // The picker's title, also the row that leads to it.
    static QString settingTitle();

private:
    void fill(int row, FormatChoice &choice) const override;
    void write(int row) override;
};
