#pragma once

#include "FormatPickerViewController.h"

#include <QtQml/qqmlregistration.h>

// The latitude and longitude notation.
class CoordinateFormatSettingsViewController : public FormatPickerViewController
{
    Q_OBJECT
    QML_ELEMENT

public:
    // Over the app's shared preferences.
    explicit CoordinateFormatSettingsViewController(QObject *parent = nullptr);
    explicit CoordinateFormatSettingsViewController(PreferencesSystem &preferences,
                                                    QObject *parent = nullptr);

private:
    void fill(int row, FormatChoice &choice) const override;
    void write(int row) override;
};
