#pragma once

#include "FormatPickerViewController.h"
#include "VeltorFormat.h"

#include <QtQml/qqmlregistration.h>

#include <optional>

// At which precision entering another cell is announced while tracking: off, squares or
// subsquares.
class CrossingAlertSettingsViewController : public FormatPickerViewController
{
    Q_OBJECT
    QML_ELEMENT

public:
    // Over the app's shared preferences.
    explicit CrossingAlertSettingsViewController(QObject *parent = nullptr);
    explicit CrossingAlertSettingsViewController(PreferencesSystem &preferences,
                                                 QObject *parent = nullptr);

private:
    void fill(int row, FormatChoice &choice) const override;
    void write(int row) override;
};
