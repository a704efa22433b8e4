#pragma once

#include "DistanceFormat.h"
#include "FormatPickerViewController.h"

#include <QtQml/qqmlregistration.h>

// The units of the accuracy read-out.
class DistanceFormatSettingsViewController : public FormatPickerViewController
{
    Q_OBJECT
    QML_ELEMENT

public:
    // Over the app's shared preferences.
    explicit DistanceFormatSettingsViewController(QObject *parent = nullptr);
    explicit DistanceFormatSettingsViewController(PreferencesSystem &preferences,
                                                  QObject *parent = nullptr);

private:
    void fill(int row, FormatChoice &choice) const override;
    void write(int row) override;
};
