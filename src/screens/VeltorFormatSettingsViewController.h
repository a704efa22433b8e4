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
    explicit VeltorFormatSettingsViewController(PreferencesSystem &preferences,
                                                QObject *parent = nullptr);

private:
    void fill(int row, FormatChoice &choice) const override;
    void write(int row) override;
};
