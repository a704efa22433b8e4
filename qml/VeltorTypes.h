#pragma once

// The library's types as QML sees them. The classes stay free of QML; only these registrations
// name them to the engine. The shared systems are singletons that hand out the one instance.

#include "ApplicationStateSystem.h"
#include "CoordinatePanelViewController.h"
#include "CrossingAlertSettingsViewController.h"
#include "StationSettingsViewController.h"
#include "MapSourceSettingsViewController.h"
#include "KeepAreaController.h"
#include "KeyboardClick.h"
#include "KeypadKey.h"
#include "LatitudeLongitudeKeypadViewController.h"
#include "LocationTrackingSystem.h"
#include "MapPanelController.h"
#include "MapView.h"
#include "PreferencesSystem.h"
#include "ProofSnapshotController.h"
#include "RootCoordinatePanelController.h"
#include "RootViewController.h"
#include "SettingsViewController.h"
#include "TargetController.h"
#include "VeltorFormatSettingsViewController.h"
#include "CoordinateFormatSettingsViewController.h"
#include "DistanceFormatSettingsViewController.h"
#include "AppearanceSettingsViewController.h"
#include "FixAgeController.h"
#include "FormatChoice.h"
#include "GreatCircleOverlay.h"
#include "GridPositionController.h"
#include "Theme.h"
#include "VeltorKeypadViewController.h"

#include <QJSEngine>
#include <QQmlEngine>
#include <QtQml/qqmlregistration.h>

namespace VeltorTypes {

// The engine must never delete a shared system: they live as long as the application.
template <typename System>
System *sharedForQml()
{
    System *system = &System::sharedSystem();
    QJSEngine::setObjectOwnership(system, QJSEngine::CppOwnership);
    return system;
}

} // namespace VeltorTypes

struct MapViewForeign
{
    Q_GADGET
    QML_FOREIGN(MapView)
    QML_NAMED_ELEMENT(MapView)
};

struct ThemeForeign
{
    Q_GADGET
    QML_FOREIGN(Theme)
    QML_NAMED_ELEMENT(Theme)
    QML_SINGLETON
};

struct KeyboardClickForeign
{
    Q_GADGET
    QML_FOREIGN(KeyboardClick)
    QML_NAMED_ELEMENT(KeyboardClick)
    QML_SINGLETON
};

struct ApplicationStateSystemForeign
{
    Q_GADGET
    QML_FOREIGN(ApplicationStateSystem)
    QML_NAMED_ELEMENT(ApplicationStateSystem)
    QML_SINGLETON

public:
    static ApplicationStateSystem *create(QQmlEngine *, QJSEngine *)
    {
        return VeltorTypes::sharedForQml<ApplicationStateSystem>();
    }
};

struct PreferencesSystemForeign
{
    Q_GADGET
    QML_FOREIGN(PreferencesSystem)
    QML_NAMED_ELEMENT(PreferencesSystem)
    QML_SINGLETON

public:
    static PreferencesSystem *create(QQmlEngine *, QJSEngine *)
    {
        return VeltorTypes::sharedForQml<PreferencesSystem>();
    }
};

struct LocationTrackingSystemForeign
{
    Q_GADGET
    QML_FOREIGN(LocationTrackingSystem)
    QML_NAMED_ELEMENT(LocationTrackingSystem)
    QML_SINGLETON

public:
    static LocationTrackingSystem *create(QQmlEngine *, QJSEngine *)
    {
        return VeltorTypes::sharedForQml<LocationTrackingSystem>();
    }
};

struct CoordinatePanelViewControllerForeign
{
    Q_GADGET
    QML_FOREIGN(CoordinatePanelViewController)
    QML_NAMED_ELEMENT(CoordinatePanelViewController)
};

struct KeepAreaControllerForeign
{
    Q_GADGET
    QML_FOREIGN(KeepAreaController)
    QML_NAMED_ELEMENT(KeepAreaController)
};

struct MapSourceSettingsViewControllerForeign
{
    Q_GADGET
    QML_FOREIGN(MapSourceSettingsViewController)
    QML_NAMED_ELEMENT(MapSourceSettingsViewController)
};

struct StationSettingsViewControllerForeign
{
    Q_GADGET
    QML_FOREIGN(StationSettingsViewController)
    QML_NAMED_ELEMENT(StationSettingsViewController)
};

struct CrossingAlertSettingsViewControllerForeign
{
    Q_GADGET
    QML_FOREIGN(CrossingAlertSettingsViewController)
    QML_NAMED_ELEMENT(CrossingAlertSettingsViewController)
};

struct ProofSnapshotControllerForeign
{
    Q_GADGET
    QML_FOREIGN(ProofSnapshotController)
    QML_NAMED_ELEMENT(ProofSnapshotController)
};

struct FixAgeControllerForeign
{
    Q_GADGET
    QML_FOREIGN(FixAgeController)
    QML_NAMED_ELEMENT(FixAgeController)
};

struct GreatCircleOverlayForeign
{
    Q_GADGET
    QML_FOREIGN(GreatCircleOverlay)
    QML_NAMED_ELEMENT(GreatCircleOverlay)
};

struct TargetControllerForeign
{
    Q_GADGET
    QML_FOREIGN(TargetController)
    QML_NAMED_ELEMENT(TargetController)
};

struct GridPositionControllerForeign
{
    Q_GADGET
    QML_FOREIGN(GridPositionController)
    QML_NAMED_ELEMENT(GridPositionController)
};

struct RootCoordinatePanelControllerForeign
{
    Q_GADGET
    QML_FOREIGN(RootCoordinatePanelController)
    QML_NAMED_ELEMENT(RootCoordinatePanelController)
};

struct RootViewControllerForeign
{
    Q_GADGET
    QML_FOREIGN(RootViewController)
    QML_NAMED_ELEMENT(RootViewController)
};

struct VeltorKeypadViewControllerForeign
{
    Q_GADGET
    QML_FOREIGN(VeltorKeypadViewController)
    QML_NAMED_ELEMENT(VeltorKeypadViewController)
};

struct LatitudeLongitudeKeypadViewControllerForeign
{
    Q_GADGET
    QML_FOREIGN(LatitudeLongitudeKeypadViewController)
    QML_NAMED_ELEMENT(LatitudeLongitudeKeypadViewController)
};

struct MapPanelControllerForeign
{
    Q_GADGET
    QML_FOREIGN(MapPanelController)
    QML_NAMED_ELEMENT(MapPanelController)
};

struct KeypadKeyForeign
{
    Q_GADGET
    QML_FOREIGN(KeypadKey)
    QML_NAMED_ELEMENT(KeypadKey)
    QML_UNCREATABLE("Keys are made by their keypad")
};

struct SettingsViewControllerForeign
{
    Q_GADGET
    QML_FOREIGN(SettingsViewController)
    QML_NAMED_ELEMENT(SettingsViewController)
};

struct VeltorFormatSettingsViewControllerForeign
{
    Q_GADGET
    QML_FOREIGN(VeltorFormatSettingsViewController)
    QML_NAMED_ELEMENT(VeltorFormatSettingsViewController)
};

struct CoordinateFormatSettingsViewControllerForeign
{
    Q_GADGET
    QML_FOREIGN(CoordinateFormatSettingsViewController)
    QML_NAMED_ELEMENT(CoordinateFormatSettingsViewController)
};

struct DistanceFormatSettingsViewControllerForeign
{
    Q_GADGET
    QML_FOREIGN(DistanceFormatSettingsViewController)
    QML_NAMED_ELEMENT(DistanceFormatSettingsViewController)
};

struct AppearanceSettingsViewControllerForeign
{
    Q_GADGET
    QML_FOREIGN(AppearanceSettingsViewController)
    QML_NAMED_ELEMENT(AppearanceSettingsViewController)
};

struct FormatChoiceForeign
{
    Q_GADGET
    QML_FOREIGN(FormatChoice)
    QML_NAMED_ELEMENT(FormatChoice)
    QML_UNCREATABLE("Choices are made by their picker")
};

struct FormatPickerViewControllerForeign
{
    Q_GADGET
    QML_FOREIGN(FormatPickerViewController)
    QML_NAMED_ELEMENT(FormatPickerViewController)
    QML_UNCREATABLE("Each setting has its own picker")
};
