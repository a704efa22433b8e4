#pragma once

#include "Appearance.h"
#include "FormatPickerViewController.h"

#include <QtQml/qqmlregistration.h>

// How the screens look: day, night or red night (for dark-adapted eyes).
class AppearanceSettingsViewController : public FormatPickerViewController
{
    Q_OBJECT
    QML_ELEMENT

public:
    // Over the app's shared preferences.
    explicit AppearanceSettingsViewController(QObject *parent = nullptr);
    explicit AppearanceSettingsViewController(PreferencesSystem &preferences,
                                              QObject *parent = nullptr);

private:
    void fill(int row, FormatChoice &choice) const override;
    void write(int row) override;
};
